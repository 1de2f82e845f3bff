// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <vector>

#include "codecs/BitReader.h"
#include "codecs/NamedCode.h"
#include "codecs/StartCode.h"
#include "codecs/VideoFacts.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

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

constexpr uint32_t kExtendedH264Aspect = 255;

// ISO/IEC 14496-10, table 6-1.
constexpr std::array<NamedCode, 4> kH264Chroma = {
        {{0, "monochrome"}, {1, "4:2:0"}, {2, "4:2:2"}, {3, "4:4:4"}}};

/** Returns the unit without its emulation prevention bytes. */
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

/** Also skips what follows, up to the picture order. */
std::string takeChromaFormat(BitReader& bits) {
    const uint32_t chroma = bits.unsignedGolomb();
    if (chroma == 3) {
        bits.skip(1);
    }
    bits.unsignedGolomb();
    bits.unsignedGolomb();
    bits.skip(1);
    std::string name = nameOf(kH264Chroma, chroma);
    if (!bits.flag()) {
        return name;
    }
    const unsigned lists = chroma == 3 ? 12 : 8;
    for (unsigned list = 0; list < lists; ++list) {
        if (bits.flag()) {
            skipScalingList(bits, list < 6 ? 16 : 64);
        }
    }
    return name;
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

}  // namespace

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
    facts.chroma = hasChromaFormat(profile) ? takeChromaFormat(bits) : nameOf(kH264Chroma, 1);
    skipPictureOrder(bits);
    readH264Picture(bits, facts);
    return bits.isPastEnd() ? std::nullopt : std::optional(facts);
}

}  // namespace ogmprobe
