// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace ogmprobe {

/** A relative path as an address in a page: all but letters, digits and "-._~/" as %XX (RFC 3986).
 */
inline std::string addressOfPath(std::string_view path) {
    constexpr std::string_view kPlain =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string address;
    for (const char letter : path) {
        address += kPlain.find(letter) != std::string_view::npos
                           ? std::string(1, letter)
                           : fmt::format("%{:02X}", static_cast<uint8_t>(letter));
    }
    return address;
}

}  // namespace ogmprobe
