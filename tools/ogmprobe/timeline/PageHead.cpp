// SPDX-License-Identifier: Apache-2.0
#include "PageHead.h"

#include "Markup.h"
#include "PageTexts.h"

namespace ogmprobe::timeline {

std::string pageHead(std::string_view title, const std::string& sheet) {
    return filledIn(kHead, {{"title", escaped(title)},
                            {"colours", std::string(kColours)},
                            {"common", std::string(kCommonSheet)},
                            {"own", sheet}});
}

}  // namespace ogmprobe::timeline
