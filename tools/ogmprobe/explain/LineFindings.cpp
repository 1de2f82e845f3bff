// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <string_view>

#include "explain/Finding.h"
#include "explain/LogTexts.h"

namespace ogmprobe {
namespace {

struct MisleadingLine {
    std::string_view beginning;
    const char* id;
    const char* text;
};

constexpr std::array<MisleadingLine, 2> kMisleadingLines = {{
        {log_text::kErrorWithoutError, "error-line-without-error",
         "The line that an MPEG audio track's queue is set up is logged as an error, but nothing "
         "is "
         "wrong."},
        {log_text::kNextGranuleZero, "average-logged-wrong",
         "The line says that the average per packet is set to 0, but it is set to 1."},
}};

}  // namespace

void explainLines(Explanation& explanation) {
    for (const MisleadingLine& misleading : kMisleadingLines) {
        const LoggedLine* line = explanation.trace().line(misleading.beginning);
        if (line == nullptr) {
            continue;
        }
        Finding finding;
        finding.id = misleading.id;
        finding.text = misleading.text;
        finding.usual = true;
        finding.line = *line;
        explanation.add(std::move(finding));
    }
}

}  // namespace ogmprobe
