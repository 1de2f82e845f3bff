// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include "explain/Finding.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

/** With this many reads, playing seems to stop. */
constexpr uint64_t kManyReads = 10'000'000;
/** Fewer are not noticed. */
constexpr uint64_t kFewReads = 100'000;

}  // namespace

void explainJunkSearches(Explanation& explanation) {
    const OggFile& file = explanation.file();
    for (const auto& [index, cost] : explanation.trace().junkSearches().costs()) {
        if (cost.reads < kFewReads) {
            continue;
        }
        const JunkRange& junk = file.junk()[index];
        Finding finding;
        finding.id = "junk-searched-again";
        finding.text = fmt::format(
                "{} of junk at offset {} are searched {} more, with {}, while the next page of a "
                "stream is looked for: after a page of another stream, the search continues too "
                "early by the length of the junk{}.",
                counted(junk.size, "byte"), junk.offset, counted(cost.searches, "time"),
                counted(cost.reads, "read"),
                cost.reads < kManyReads ? "" : "; on a device, playing seems to stop there");
        finding.offset = junk.offset;
        finding.bytes = junk.size;
        finding.timeUs = file.timeBefore(junk.offset);
        finding.untilUs = file.timeAfter(junk.offset);
        explanation.add(std::move(finding));
    }
}

}  // namespace ogmprobe
