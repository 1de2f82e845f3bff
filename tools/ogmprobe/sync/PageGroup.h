// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ogmprobe {

/** A packet or frame with its length in granule positions. */
struct TimedUnit {
    /** Index of the unit in its stream. */
    size_t unit = 0;
    /** In granule positions; nothing if the file does not show it. */
    std::optional<int64_t> length;
};

/** The units that end on a page with a granule position, or on pages without one before it. */
struct PageGroup {
    int64_t granule = 0;
    /** Whether the page of the previous units is the stream's page directly before this one. */
    bool follows = false;
    /** Whether it is the stream's first group. */
    bool isFirst = false;
    std::vector<TimedUnit> units;

    /** The length of the units from `from` up to `end`; nothing if one of them is unknown. */
    std::optional<int64_t> lengthOf(size_t from, size_t end) const;
    std::optional<int64_t> length() const { return lengthOf(0, units.size()); }
    std::optional<int64_t> lastLength() const { return units.back().length; }
};

}  // namespace ogmprobe
