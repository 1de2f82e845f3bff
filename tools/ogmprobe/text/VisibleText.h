// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ogmprobe {

/**
 * Returns the text as it can be shown on one line of a terminal: characters that break the line,
 * move the cursor or change the direction of writing become escapes, and so do bytes that are not
 * UTF-8.
 */
std::string visible(std::string_view text);

/** Returns the columns of UTF-8 text; each character is assumed to be one column wide. */
size_t columnsOf(std::string_view text);

/** Returns UTF-8 text, cut to this number of columns with an ellipsis if it is longer. */
std::string shortened(std::string_view text, size_t columns);

}  // namespace ogmprobe
