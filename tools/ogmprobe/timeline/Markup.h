// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace ogmprobe::timeline {

/**
 * A text from outside for use in XML or HTML, within elements and in quoted attributes. What is no
 * UTF-8 or may not stand in XML becomes U+FFFD.
 */
std::string escaped(std::string_view text);

/**
 * The template with each {{name}} replaced by its value. Values are not searched in turn. Every
 * name must have a value.
 */
std::string filledIn(std::string_view page, const std::map<std::string_view, std::string>& values);

}  // namespace ogmprobe::timeline
