// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ogmprobe {

/** Returns two lower-case digits per byte, with the separator between bytes. */
inline std::string hexText(std::span<const uint8_t> bytes, std::string_view separator = "") {
    return fmt::format("{:02x}", fmt::join(bytes, separator));
}

}  // namespace ogmprobe
