// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ogmprobe {

/**
 * The text as it can be shown in one line of a terminal: what would break the line, move the cursor
 * or turn the direction of writing is written as an escape, and so are bytes that are no UTF-8.
 */
std::string visible(std::string_view text);

/** Of UTF-8; each character is taken for one column wide. */
size_t columnsOf(std::string_view text);

/** UTF-8, cut to so many columns with an ellipsis where it is longer. */
std::string shortened(std::string_view text, size_t columns);

}  // namespace ogmprobe
