// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace ogmprobe::timeline {

/**
 * Returns any text escaped for XML or HTML, within elements and in quoted attributes. Bytes that
 * are not UTF-8, and characters that XML does not allow, become U+FFFD.
 */
std::string escaped(std::string_view text);

/**
 * Returns the template with each {{name}} replaced by its value. Names within values are not
 * replaced. Every name must have a value.
 */
std::string filledIn(std::string_view page, const std::map<std::string_view, std::string>& values);

}  // namespace ogmprobe::timeline
