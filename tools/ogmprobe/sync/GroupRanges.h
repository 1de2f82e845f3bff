// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "sync/GranuleReading.h"

namespace ogmprobe {

/** From where to where a unit can begin, in granule positions. */
struct GranuleRange {
    int64_t least = 0;
    int64_t most = 0;

    bool operator==(const GranuleRange&) const = default;
};

/**
 * Where each unit of the group begins. `before` is the group in front of it in the stream; null for
 * the first. Counted forward from the page before and backward from the group's own; where the two
 * disagree, as where frames were left out, the truth lies between. What cannot be counted lies
 * between the granule positions of the two pages.
 */
std::vector<GranuleRange> rangesOf(const PageGroup& group, const PageGroup* before,
                                   GranuleReading reading);

}  // namespace ogmprobe
