// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace ogmprobe::timeline {

/**
 * The beginning of a self-contained page, up to its body. `sheet` is the page's own style; all
 * pages share the rest.
 */
std::string pageHead(std::string_view title, const std::string& sheet);

}  // namespace ogmprobe::timeline
