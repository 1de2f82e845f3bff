// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <string_view>

#include "explain/Finding.h"
#include "explain/LogTexts.h"

namespace ogmprobe {
namespace {

struct MisleadingLine {
    std::string_view beginning;
    /** The function that writes it; any for `kNone`. */
    PluginFunction function;
    uint64_t minCount;
    const char* id;
    const char* text;
};

constexpr std::array<MisleadingLine, 4> kMisleadingLines = {{
        {log_text::kErrorWithoutError, PluginFunction::kNone, 1, "error-line-without-error",
         "The setup of an MPEG audio track's queue is logged as an error, but nothing "
         "is "
         "wrong."},
        {log_text::kJunkSkipped, PluginFunction::kCreate, 2, "junk-read-twice",
         "Junk between the first pages is read and logged twice: each of them is searched for "
         "twice."},
        {log_text::kJunkSkipped, PluginFunction::kRead, 1, "junk-look-up-early",
         "After junk the look-up of a stream's next page begins too early, by the length of the "
         "junk, and reads some bytes again."},
        {log_text::kNextGranuleZero, PluginFunction::kNone, 1, "average-logged-wrong",
         "The line says that the average per packet is set to 0, but it is set to 1."},
}};

}  // namespace

void explainLines(Explanation& explanation) {
    for (const MisleadingLine& misleading : kMisleadingLines) {
        const auto& lines = explanation.trace().lines();
        const auto line = std::find_if(lines.begin(), lines.end(), [&](const LoggedLine& entry) {
            return entry.text.starts_with(misleading.beginning) &&
                   entry.count >= misleading.minCount &&
                   (misleading.function == PluginFunction::kNone ||
                    misleading.function == entry.function);
        });
        if (line == lines.end()) {
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
