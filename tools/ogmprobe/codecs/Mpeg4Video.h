// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace ogmprobe {

/**
 * Returns the bytes from the first video object layer (ISO/IEC 14496-2, start codes 00 00 01 20 to
 * 2F) on; empty if a picture comes first.
 */
std::span<const uint8_t> videoObjectLayer(std::span<const uint8_t> stream);

struct PictureSize {
    int32_t width = 0;
    int32_t height = 0;
};

/**
 * Returns the size in the first video object layer; nothing if there is none or it is not
 * rectangular.
 */
std::optional<PictureSize> pictureSize(std::span<const uint8_t> stream);

}  // namespace ogmprobe
