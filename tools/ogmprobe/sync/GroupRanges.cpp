// SPDX-License-Identifier: Apache-2.0
#include "sync/GroupRanges.h"

#include <algorithm>

namespace ogmprobe {
namespace {

/** Counts the units of a group for one of the two readings. */
class GroupCount {
  public:
    GroupCount(const PageGroup& group, const PageGroup* before, bool countsEnds)
        : mGroup(group), mCountsEnds(countsEnds) {
        const bool rises = before != nullptr && before->granule <= group.granule;
        mFloor = rises ? before->granule : 0;
        if (rises && group.follows) {
            mStart = countsEnds ? before->granule : startAfter(*before);
        }
    }

    GranuleRange rangeOf(size_t unit) const {
        if (!mCountsEnds && unit + 1 == mGroup.units.size()) {
            return {mGroup.granule, mGroup.granule};
        }
        const auto forward = countedForward(unit);
        const auto backward = countedBackward(unit);
        if (forward && backward) {
            const auto [least, most] = std::minmax(*forward, *backward);
            return {std::clamp(least, mFloor, mGroup.granule),
                    std::clamp(most, mFloor, mGroup.granule)};
        }
        if (backward) {
            return {*backward, *backward};
        }
        if (!forward) {
            return {mFloor, mGroup.granule};
        }
        // The first unit of the page follows the last one of the page before.
        const bool isNext = unit == 0 && mCountsEnds;
        const int64_t least = std::min(*forward, mGroup.granule);
        return {least, isNext ? least : mGroup.granule};
    }

  private:
    static std::optional<int64_t> startAfter(const PageGroup& before) {
        const auto length = before.lastLength();
        return length ? std::optional(before.granule + *length) : std::nullopt;
    }

    std::optional<int64_t> countedForward(size_t unit) const {
        const auto length = mGroup.lengthOf(0, unit);
        return mStart && length ? std::optional(*mStart + *length) : std::nullopt;
    }

    std::optional<int64_t> countedBackward(size_t unit) const {
        const auto length = mGroup.lengthOf(unit, mGroup.units.size() - (mCountsEnds ? 0 : 1));
        return length ? std::optional(mGroup.granule - *length) : std::nullopt;
    }

    const PageGroup& mGroup;
    const bool mCountsEnds;
    int64_t mFloor = 0;
    /** Where the first unit begins if nothing is missing. */
    std::optional<int64_t> mStart;
};

}  // namespace

std::vector<GranuleRange> rangesOf(const PageGroup& group, const PageGroup* before,
                                   GranuleReading reading) {
    const GroupCount byEnd(group, before, true);
    const GroupCount byBeginning(group, before, false);
    std::vector<GranuleRange> ranges;
    for (size_t i = 0; i < group.units.size(); ++i) {
        const GranuleRange ended = byEnd.rangeOf(i);
        const GranuleRange begun = byBeginning.rangeOf(i);
        switch (reading) {
            case GranuleReading::kEnd:
                ranges.push_back(ended);
                break;
            case GranuleReading::kBeginning:
                ranges.push_back(begun);
                break;
            case GranuleReading::kUnknown:
                ranges.push_back(
                        {std::min(ended.least, begun.least), std::max(ended.most, begun.most)});
                break;
        }
    }
    return ranges;
}

}  // namespace ogmprobe
