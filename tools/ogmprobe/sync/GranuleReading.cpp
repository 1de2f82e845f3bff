// SPDX-License-Identifier: Apache-2.0
#include "sync/GranuleReading.h"

namespace ogmprobe {
namespace {

/** The number of pages that support each reading. */
struct Votes {
    size_t end = 0;
    size_t beginning = 0;

    /** The granule position rises by `distance`; the other two are what each reading predicts. */
    void count(int64_t distance, int64_t byEnd, int64_t byBeginning) {
        end += distance == byEnd && distance != byBeginning ? 1 : 0;
        beginning += distance == byBeginning && distance != byEnd ? 1 : 0;
    }
};

}  // namespace

const char* readingName(GranuleReading reading) {
    switch (reading) {
        case GranuleReading::kEnd:
            return "end";
        case GranuleReading::kBeginning:
            return "beginning";
        case GranuleReading::kUnknown:
            break;
    }
    return "unknown";
}

GranuleReading readingOf(const std::vector<PageGroup>& groups) {
    Votes votes;
    const PageGroup* before = nullptr;
    for (const PageGroup& group : groups) {
        const auto length = group.length();
        const auto lengthBefore = before != nullptr ? before->lastLength() : std::nullopt;
        if (length && group.isFirst) {
            votes.count(group.granule, *length, *length - *group.lastLength());
        } else if (length && lengthBefore && group.follows) {
            votes.count(group.granule - before->granule, *length,
                        *lengthBefore + *length - *group.lastLength());
        }
        before = &group;
    }
    if (votes.end == votes.beginning) {
        return GranuleReading::kUnknown;
    }
    return votes.end > votes.beginning ? GranuleReading::kEnd : GranuleReading::kBeginning;
}

}  // namespace ogmprobe
