// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "sync/GranuleReading.h"

namespace ogmprobe {

/** The range in which a unit can begin, in granule positions. */
struct GranuleRange {
    int64_t least = 0;
    int64_t most = 0;

    bool operator==(const GranuleRange&) const = default;
};

/**
 * Returns where each unit of the group begins. `before` is the previous group in the stream; null
 * for the first one. Units are counted forward from the page before and backward from the group's
 * own page. If the two counts differ, for example because frames are missing, the unit begins
 * somewhere between them. Units that cannot be counted begin between the granule positions of the
 * two pages.
 */
std::vector<GranuleRange> rangesOf(const PageGroup& group, const PageGroup* before,
                                   GranuleReading reading);

}  // namespace ogmprobe
