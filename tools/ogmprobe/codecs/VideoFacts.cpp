// SPDX-License-Identifier: Apache-2.0
#include "codecs/VideoFacts.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <string_view>
#include <vector>

#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

/**
 * Returns the bytes from the last byte of the first start code whose last byte is within the
 * bounds.
 */
std::optional<Bytes> afterStartCode(Bytes stream, uint8_t first, uint8_t last) {
    for (size_t i = 0; i + 3 < stream.size(); ++i) {
        const bool isCode = stream[i] == 0 && stream[i + 1] == 0 && stream[i + 2] == 1;
        if (isCode && stream[i + 3] >= first && stream[i + 3] <= last) {
            return stream.subspan(i + 3);
        }
    }
    return std::nullopt;
}

struct NamedCode {
    uint32_t code;
    std::string_view name;
};

template <size_t Size>
std::string nameOf(const std::array<NamedCode, Size>& table, uint32_t code) {
    const auto* found = std::find_if(table.begin(), table.end(),
                                     [code](const NamedCode& row) { return row.code == code; });
    return found == table.end() ? "" : std::string(found->name);
}

// ISO/IEC 14496-2, table 6-10.
constexpr std::array<NamedCode, 4> kObjectTypes = {
        {{1, "Simple"}, {3, "Core"}, {4, "Main"}, {17, "Advanced Simple"}}};

// ISO/IEC 14496-2, table 6-12, and 13818-2, table 6-3, which agree in the rows that both have.
constexpr std::array<NamedCode, 5> kSampleAspects = {
        {{1, "1:1"}, {2, "12:11"}, {3, "10:11"}, {4, "16:11"}, {5, "40:33"}}};
constexpr std::array<NamedCode, 4> kPictureAspects = {
        {{1, "1:1"}, {2, "4:3 picture"}, {3, "16:9 picture"}, {4, "2.21:1 picture"}}};

// ISO/IEC 13818-2, tables 8-2 and 8-3.
constexpr std::array<NamedCode, 5> kMpeg2Profiles = {
        {{5, "Simple"}, {4, "Main"}, {3, "SNR Scalable"}, {2, "Spatially Scalable"}, {1, "High"}}};
constexpr std::array<NamedCode, 4> kMpeg2Levels = {
        {{10, "Low"}, {8, "Main"}, {6, "High 1440"}, {4, "High"}}};

// ISO/IEC 14496-10, annex A.
constexpr std::array<NamedCode, 7> kH264Profiles = {{{66, "Baseline"},
                                                     {77, "Main"},
                                                     {88, "Extended"},
                                                     {100, "High"},
                                                     {110, "High 10"},
                                                     {122, "High 4:2:2"},
                                                     {244, "High 4:4:4 Predictive"}}};
// ISO/IEC 14496-10, table E-1; the first ones are those of MPEG-4 part 2.
constexpr std::array<NamedCode, 16> kH264Aspects = {{{1, "1:1"},
                                                     {2, "12:11"},
                                                     {3, "10:11"},
                                                     {4, "16:11"},
                                                     {5, "40:33"},
                                                     {6, "24:11"},
                                                     {7, "20:11"},
                                                     {8, "32:11"},
                                                     {9, "80:33"},
                                                     {10, "18:11"},
                                                     {11, "15:11"},
                                                     {12, "64:33"},
                                                     {13, "160:99"},
                                                     {14, "4:3"},
                                                     {15, "3:2"},
                                                     {16, "2:1"}}};

constexpr uint32_t kExtendedAspect = 15;
constexpr uint32_t kExtendedH264Aspect = 255;

// ISO/IEC 14496-2, annex G, for the profiles that are in use.
void setMpeg4Profile(uint8_t code, VideoFacts& facts) {
    if (code >= 0xf0 && code <= 0xf5) {
        facts.profile = "Advanced Simple";
        facts.level = fmt::format("{}", code - 0xf0);
    } else if (code >= 0x01 && code <= 0x03) {
        facts.profile = "Simple";
        facts.level = fmt::format("{}", code);
    } else if (code == 0x08) {
        facts.profile = "Simple";
        facts.level = "0";
    } else if (code == 0x21 || code == 0x22) {
        facts.profile = "Core";
        facts.level = fmt::format("{}", code - 0x20);
    }
}

constexpr unsigned bitsFor(uint32_t values) {
    unsigned bits = 1;
    while (bits < 16 && (uint32_t{1} << bits) < values) {
        ++bits;
    }
    return bits;
}

std::string mpeg4Aspect(BitReader& bits) {
    const uint32_t code = bits.take(4);
    if (code != kExtendedAspect) {
        return nameOf(kSampleAspects, code);
    }
    const uint32_t width = bits.take(8);
    return fmt::format("{}:{}", width, bits.take(8));
}

void skipVolControl(BitReader& bits) {
    constexpr size_t kBufferParameters = 79;
    if (bits.flag()) {
        bits.skip(3);
        if (bits.flag()) {
            bits.skip(kBufferParameters);
        }
    }
}

/** Reads the rest of a video object layer from its shape on; only rectangles have a size. */
void readMpeg4Picture(BitReader& bits, VideoFacts& facts) {
    if (bits.take(2) != 0) {
        return;
    }
    bits.skip(1);
    const uint32_t resolution = bits.take(16);
    bits.skip(1);
    if (bits.flag()) {
        bits.skip(bitsFor(resolution));
    }
    bits.skip(1);
    facts.width = bits.take(13);
    bits.skip(1);
    facts.height = bits.take(13);
    bits.skip(1);
    facts.interlaced = bits.flag();
}

/** Returns the unit without the bytes that keep a payload from looking like a start code. */
std::vector<uint8_t> unescaped(Bytes unit) {
    std::vector<uint8_t> bytes;
    size_t zeros = 0;
    for (const uint8_t byte : unit) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        bytes.push_back(byte);
    }
    return bytes;
}

void skipScalingList(BitReader& bits, unsigned size) {
    int32_t last = 8;
    int32_t next = 8;
    for (unsigned i = 0; i < size && next != 0 && !bits.isPastEnd(); ++i) {
        next = (last + bits.signedGolomb() + 256) % 256;
        last = next == 0 ? last : next;
    }
}

void skipChromaFormat(BitReader& bits) {
    const uint32_t chroma = bits.unsignedGolomb();
    if (chroma == 3) {
        bits.skip(1);
    }
    bits.unsignedGolomb();
    bits.unsignedGolomb();
    bits.skip(1);
    if (!bits.flag()) {
        return;
    }
    const unsigned lists = chroma == 3 ? 12 : 8;
    for (unsigned list = 0; list < lists; ++list) {
        if (bits.flag()) {
            skipScalingList(bits, list < 6 ? 16 : 64);
        }
    }
}

void skipPictureOrder(BitReader& bits) {
    bits.unsignedGolomb();
    const uint32_t type = bits.unsignedGolomb();
    if (type == 0) {
        bits.unsignedGolomb();
    } else if (type == 1) {
        bits.skip(1);
        bits.signedGolomb();
        bits.signedGolomb();
        const uint32_t frames = bits.unsignedGolomb();
        for (uint32_t i = 0; i < frames && i < 256; ++i) {
            bits.signedGolomb();
        }
    }
    bits.unsignedGolomb();
    bits.skip(1);
}

void readH264Picture(BitReader& bits, VideoFacts& facts) {
    constexpr uint32_t kMacroblock = 16;
    const uint32_t columns = bits.unsignedGolomb() + 1;
    const uint32_t rows = bits.unsignedGolomb() + 1;
    const bool framesOnly = bits.flag();
    facts.interlaced = !framesOnly;
    if (!framesOnly) {
        bits.skip(1);
    }
    bits.skip(1);
    facts.width = columns * kMacroblock;
    facts.height = rows * kMacroblock * (framesOnly ? 1 : 2);
    if (bits.flag()) {
        // In units of two samples, as with 4:2:0, which nearly all streams have.
        const uint32_t left = bits.unsignedGolomb();
        const uint32_t right = bits.unsignedGolomb();
        const uint32_t top = bits.unsignedGolomb();
        const uint32_t bottom = bits.unsignedGolomb();
        facts.width -= 2 * (left + right);
        facts.height -= (framesOnly ? 2 : 4) * (top + bottom);
    }
    if (bits.flag() && bits.flag()) {
        const uint32_t code = bits.take(8);
        if (code == kExtendedH264Aspect) {
            const uint32_t width = bits.take(16);
            facts.aspect = fmt::format("{}:{}", width, bits.take(16));
        } else {
            facts.aspect = nameOf(kH264Aspects, code);
        }
    }
}

bool hasChromaFormat(uint32_t profile) {
    constexpr std::array<uint32_t, 9> kProfiles = {100, 110, 122, 244, 44, 83, 86, 118, 128};
    return std::find(kProfiles.begin(), kProfiles.end(), profile) != kProfiles.end();
}

/** Returns the text up to the first byte that is not printable ASCII. */
std::string printableBeginning(Bytes bytes) {
    const auto end = std::find_if(bytes.begin(), bytes.end(),
                                  [](uint8_t byte) { return byte < ' ' || byte > '~'; });
    return {bytes.begin(), end};
}

/** Returns "11:9" for a picture with samples of that aspect ratio; empty if it is not known. */
std::string pictureAspect(const VideoFacts& facts) {
    uint64_t wide = 0;
    uint64_t high = 0;
    const char* const end = facts.aspect.data() + facts.aspect.size();
    const auto colon = std::from_chars(facts.aspect.data(), end, wide);
    const auto rest = colon.ptr == end ? colon : std::from_chars(colon.ptr + 1, end, high);
    if (rest.ptr != end || wide == 0 || high == 0 || facts.width == 0 || facts.height == 0) {
        return "";
    }
    wide *= facts.width;
    high *= facts.height;
    const uint64_t common = std::gcd(wide, high);
    return fmt::format("{}:{}", wide / common, high / common);
}

}  // namespace

std::optional<VideoFacts> mpeg4Facts(Bytes stream) {
    const auto layer = afterStartCode(stream, 0x20, 0x2f);
    if (!layer) {
        return std::nullopt;
    }
    VideoFacts facts;
    BitReader bits(layer->subspan(1));
    bits.skip(1);
    facts.profile = nameOf(kObjectTypes, bits.take(8));
    if (bits.flag()) {
        bits.skip(7);
    }
    facts.aspect = mpeg4Aspect(bits);
    skipVolControl(bits);
    readMpeg4Picture(bits, facts);
    if (bits.isPastEnd()) {
        return std::nullopt;
    }
    if (const auto sequence = afterStartCode(stream, 0xb0, 0xb0);
        sequence && sequence->size() > 1) {
        setMpeg4Profile((*sequence)[1], facts);
    }
    if (const auto userData = afterStartCode(stream, 0xb2, 0xb2)) {
        facts.encoder = printableBeginning(userData->subspan(1));
    }
    return facts;
}

std::optional<VideoFacts> mpeg2Facts(Bytes stream) {
    const auto sequence = afterStartCode(stream, 0xb3, 0xb3);
    if (!sequence) {
        return std::nullopt;
    }
    VideoFacts facts;
    BitReader bits(sequence->subspan(1));
    facts.width = bits.take(12);
    facts.height = bits.take(12);
    const uint32_t aspect = bits.take(4);
    if (bits.isPastEnd()) {
        return std::nullopt;
    }
    const auto extension = afterStartCode(*sequence, 0xb5, 0xb5);
    if (!extension || extension->size() < 4 || (*extension)[1] >> 4 != 1) {
        // MPEG-1 has neither profiles nor fields, and another table of aspects.
        facts.profile = "MPEG-1";
        facts.aspect = aspect == 1 ? "1:1" : "";
        facts.interlaced = false;
        return facts;
    }
    facts.aspect = nameOf(kPictureAspects, aspect);
    BitReader extended(extension->subspan(1));
    extended.skip(5);
    facts.profile = nameOf(kMpeg2Profiles, extended.take(3));
    facts.level = nameOf(kMpeg2Levels, extended.take(4));
    facts.interlaced = !extended.flag();
    return facts;
}

std::optional<VideoFacts> h264Facts(Bytes stream) {
    constexpr uint8_t kSequenceParameters = 7;
    std::optional<Bytes> unit = afterStartCode(stream, 0, 0xff);
    while (unit && ((*unit)[0] & 0x1fU) != kSequenceParameters) {
        unit = afterStartCode(*unit, 0, 0xff);
    }
    if (!unit) {
        return std::nullopt;
    }
    constexpr size_t kLongest = 4096;
    const std::vector<uint8_t> bytes = unescaped(unit->first(std::min(unit->size(), kLongest)));
    BitReader bits(Bytes(bytes).subspan(1));
    VideoFacts facts;
    const uint32_t profile = bits.take(8);
    bits.skip(8);
    const uint32_t level = bits.take(8);
    facts.profile = nameOf(kH264Profiles, profile);
    facts.level = fmt::format("{}.{}", level / 10, level % 10);
    bits.unsignedGolomb();
    if (hasChromaFormat(profile)) {
        skipChromaFormat(bits);
    }
    skipPictureOrder(bits);
    readH264Picture(bits, facts);
    return bits.isPastEnd() ? std::nullopt : std::optional(facts);
}

std::string videoFactsText(const VideoFacts& facts) {
    std::string text;
    const auto add = [&text](const std::string& words) {
        text += (text.empty() ? "" : ", ") + words;
    };
    if (!facts.profile.empty()) {
        add(facts.profile == "MPEG-1" ? facts.profile : facts.profile + " profile");
    }
    if (!facts.level.empty()) {
        add("level " + facts.level);
    }
    if (facts.width != 0) {
        add(fmt::format("{}x{}", facts.width, facts.height));
    }
    if (!facts.aspect.empty()) {
        add((facts.aspect.ends_with("picture") ? "" : "sample aspect ") + facts.aspect);
    }
    if (const std::string aspect = pictureAspect(facts); !aspect.empty()) {
        add(aspect + " picture");
    }
    if (facts.interlaced) {
        add(*facts.interlaced ? "interlaced" : "progressive");
    }
    if (!facts.encoder.empty()) {
        add("encoder " + facts.encoder);
    }
    return text;
}

}  // namespace ogmprobe
