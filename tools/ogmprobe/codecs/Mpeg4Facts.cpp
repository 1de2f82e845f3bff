// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "codecs/BitReader.h"
#include "codecs/NamedCode.h"
#include "codecs/StartCode.h"
#include "codecs/VideoFacts.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

// ISO/IEC 14496-2, table 6-10.
constexpr std::array<NamedCode, 4> kObjectTypes = {
        {{1, "Simple"}, {3, "Core"}, {4, "Main"}, {17, "Advanced Simple"}}};

// ISO/IEC 14496-2, table 6-12.
constexpr std::array<NamedCode, 5> kSampleAspects = {
        {{1, "1:1"}, {2, "12:11"}, {3, "10:11"}, {4, "16:11"}, {5, "40:33"}}};
constexpr uint32_t kExtendedAspect = 15;

// ISO/IEC 14496-2, table 6-13; also the default of a layer without this field.
constexpr std::array<NamedCode, 1> kChromaFormats = {{{1, "4:2:0"}}};

/** Of `sprite_enable`. */
constexpr uint32_t kStaticSprite = 1;
constexpr uint32_t kGlobalMotion = 2;

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

void readVolControl(BitReader& bits, VideoFacts& facts) {
    constexpr size_t kBufferParameters = 79;
    facts.chroma = nameOf(kChromaFormats, 1);
    if (bits.flag()) {
        facts.chroma = nameOf(kChromaFormats, bits.take(2));
        bits.skip(1);
        if (bits.flag()) {
            bits.skip(kBufferParameters);
        }
    }
}

void readSprite(BitReader& bits, uint32_t version, VideoFacts& facts) {
    constexpr size_t kStaticSpriteSize = size_t{4} * (13 + 1);
    const uint32_t sprite = bits.take(version == 1 ? 1 : 2);
    if (sprite != kStaticSprite && sprite != kGlobalMotion) {
        return;
    }
    bits.skip(sprite == kStaticSprite ? kStaticSpriteSize : 0);
    const uint32_t points = bits.take(6);
    bits.skip(2 + 1);  // sprite_warping_accuracy, sprite_brightness_change
    bits.skip(sprite == kStaticSprite ? 1 : 0);
    if (sprite == kGlobalMotion) {
        facts.warpPoints = points;
    }
}

/** Ends with a zero, or when it is full. */
void skipMatrix(BitReader& bits) {
    constexpr int kEntries = 64;
    for (int i = 0; i < kEntries && bits.take(8) != 0; ++i) {
    }
}

/** The matrices that coefficients are divided by. */
void readQuantizer(BitReader& bits, VideoFacts& facts) {
    facts.quantizer = "H.263";
    if (!bits.flag()) {
        return;
    }
    facts.quantizer = "MPEG";
    for (int matrix = 0; matrix < 2; ++matrix) {
        if (bits.flag()) {
            facts.quantizer = "MPEG with own matrices";
            skipMatrix(bits);
        }
    }
}

/** Reads the rest of a video object layer from its shape on; only rectangles have a size. */
void readPicture(BitReader& bits, uint32_t version, VideoFacts& facts) {
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
    bits.skip(1);  // obmc_disable
    readSprite(bits, version, facts);
    bits.skip(bits.flag() ? 4 + 4 : 0);  // not_8_bit: quant_precision, bits_per_pixel
    readQuantizer(bits, facts);
    facts.quarterPel = version != 1 && bits.flag();
}

/** Returns the text up to the first byte that is not printable ASCII. */
std::string printableBeginning(Bytes bytes) {
    const auto end = std::find_if(bytes.begin(), bytes.end(),
                                  [](uint8_t byte) { return byte < ' ' || byte > '~'; });
    return {bytes.begin(), end};
}

/** If some packets have two pictures, DivX writes a p after its version. */
bool saysPacked(const std::string& encoder) {
    return encoder.starts_with("DivX") && encoder.ends_with('p');
}

/** Reads the layer's user data. */
void readUserData(Bytes stream, VideoFacts& facts) {
    for (auto data = afterStartCode(stream, 0xb2, 0xb2); data;
         data = afterStartCode(*data, 0xb2, 0xb2)) {
        const std::string text = printableBeginning(data->subspan(1));
        facts.packed = facts.packed || saysPacked(text);
        facts.encoder += (facts.encoder.empty() || text.empty() ? "" : ", ") + text;
    }
}

}  // namespace

std::optional<VideoFacts> mpeg4Facts(Bytes stream) {
    constexpr uint32_t kFirstVersion = 1;
    const auto layer = afterStartCode(stream, 0x20, 0x2f);
    if (!layer) {
        return std::nullopt;
    }
    VideoFacts facts;
    BitReader bits(layer->subspan(1));
    bits.skip(1);
    facts.profile = nameOf(kObjectTypes, bits.take(8));
    uint32_t version = kFirstVersion;
    if (bits.flag()) {
        version = bits.take(4);
        bits.skip(3);
    }
    facts.aspect = mpeg4Aspect(bits);
    readVolControl(bits, facts);
    readPicture(bits, version, facts);
    if (bits.isPastEnd()) {
        return std::nullopt;
    }
    if (const auto sequence = afterStartCode(stream, 0xb0, 0xb0);
        sequence && sequence->size() > 1) {
        setMpeg4Profile((*sequence)[1], facts);
    }
    const auto picture = afterStartCode(stream, 0xb6, 0xb6);
    readUserData(
            picture ? stream.first(static_cast<size_t>(picture->data() - stream.data())) : stream,
            facts);
    return facts;
}

}  // namespace ogmprobe
