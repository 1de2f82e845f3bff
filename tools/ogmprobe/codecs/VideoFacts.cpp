// SPDX-License-Identifier: Apache-2.0
#include "codecs/VideoFacts.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <numeric>

#include "codecs/StartCode.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

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

/** `vop_coding_type` of MPEG-4 part 2, which is the first field; `picture_coding_type` of MPEG-2.
 */
std::optional<bool> isBPicture(std::span<const uint8_t> code) {
    constexpr uint8_t kMpeg4Picture = 0xb6;
    constexpr uint8_t kMpeg2Picture = 0x00;
    if (code.front() == kMpeg4Picture && code.size() > 1) {
        return code[1] >> 6 == 2;
    }
    if (code.front() == kMpeg2Picture && code.size() > 2) {
        return (code[2] >> 3 & 7U) == 3;
    }
    return std::nullopt;
}

}  // namespace

std::optional<uint32_t> mostBPictures(std::span<const uint8_t> stream) {
    std::optional<uint32_t> most;
    uint32_t row = 0;
    for (auto code = afterStartCode(stream, 0, 0xff); code; code = afterStartCode(*code, 0, 0xff)) {
        if (const auto isB = isBPicture(*code)) {
            row = *isB ? row + 1 : 0;
            most = std::max(most.value_or(0), row);
        }
    }
    return most;
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
    if (!facts.chroma.empty()) {
        add(facts.chroma);
    }
    if (!facts.quantizer.empty()) {
        add("quantizer " + facts.quantizer);
    }
    if (facts.quarterPel.value_or(false)) {
        add("quarter-pel motion");
    }
    if (facts.warpPoints) {
        add(fmt::format("global motion by {}", counted(*facts.warpPoints, "warp point")));
    }
    if (facts.bPictures) {
        add(*facts.bPictures == 0
                    ? "no B pictures"
                    : fmt::format("up to {} in a row", counted(*facts.bPictures, "B picture")));
    }
    if (facts.packed) {
        add("packed");
    }
    if (!facts.encoder.empty()) {
        add("encoder " + facts.encoder);
    }
    return text;
}

}  // namespace ogmprobe
