// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "codecs/BitReader.h"
#include "codecs/NamedCode.h"
#include "codecs/StartCode.h"
#include "codecs/VideoFacts.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

// ISO/IEC 13818-2, table 6-3.
constexpr std::array<NamedCode, 4> kPictureAspects = {
        {{1, "1:1"}, {2, "4:3 picture"}, {3, "16:9 picture"}, {4, "2.21:1 picture"}}};

// ISO/IEC 13818-2, tables 8-2 and 8-3.
constexpr std::array<NamedCode, 5> kMpeg2Profiles = {
        {{5, "Simple"}, {4, "Main"}, {3, "SNR Scalable"}, {2, "Spatially Scalable"}, {1, "High"}}};
constexpr std::array<NamedCode, 4> kMpeg2Levels = {
        {{10, "Low"}, {8, "Main"}, {6, "High 1440"}, {4, "High"}}};

// ISO/IEC 13818-2, table 6-5.
constexpr std::array<NamedCode, 3> kMpeg2Chroma = {{{1, "4:2:0"}, {2, "4:2:2"}, {3, "4:4:4"}}};

}  // namespace

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
        facts.chroma = "4:2:0";
        return facts;
    }
    facts.aspect = nameOf(kPictureAspects, aspect);
    BitReader extended(extension->subspan(1));
    extended.skip(5);
    facts.profile = nameOf(kMpeg2Profiles, extended.take(3));
    facts.level = nameOf(kMpeg2Levels, extended.take(4));
    facts.interlaced = !extended.flag();
    facts.chroma = nameOf(kMpeg2Chroma, extended.take(2));
    return facts;
}

}  // namespace ogmprobe
