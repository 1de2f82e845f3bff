// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace ogmprobe::timeline {

/**
 * The beginning of a page that needs nothing from elsewhere, up to its body. The sheet is its own
 * style; all pages share the rest.
 */
std::string pageHead(std::string_view title, const std::string& sheet);

}  // namespace ogmprobe::timeline
