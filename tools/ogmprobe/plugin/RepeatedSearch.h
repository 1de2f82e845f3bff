// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>

namespace ogmprobe {

/**
 * Notices a plug-in that goes through the same junk again and again, so that its searches need not
 * be done in full: it looks for a stream's next page, finds another stream's after the junk, and
 * goes on from where that page would end if there were no junk. With pages of a kilobyte a hole of
 * a gigabyte is so searched a million times, which would take days.
 *
 * Such a plug-in uses nothing of the page but its header. A search that is not done in full ends at
 * its first byte, and the reads of the header that follow are answered from the page's true place.
 */
class RepeatedSearch {
  public:
    /** A search begins there. Gives how far ahead it is known to end; 0: it is to be done. */
    off64_t begin(off64_t offset) {
        const bool isKnown = mStage == Stage::kPageMeasured && offset == mBegin + mPageSize &&
                             mFound - offset >= kLeast;
        mAhead = isKnown ? mFound - offset : 0;
        mBegin = offset;
        mStage = Stage::kSearching;
        if (isKnown) {
            ++mRounds;
        }
        return mAhead;
    }

    /** How far ahead of where it is asked for a read that is no search has to be done. */
    off64_t ahead() const { return mAhead; }

    /** Whether a lacing table is read there, though it is as long as the reads of a search. */
    bool isLacingTable(off64_t offset) const {
        return mStage == Stage::kHeaderRead && offset + mAhead == mFound + mPageSize;
    }

    /** What such a read gave, at its true place. A search was at `searchedUpTo` before. */
    void read(off64_t offset, std::span<const uint8_t> bytes, off64_t searchedUpTo) {
        if (mStage == Stage::kSearching && offset == searchedUpTo) {
            mFound = offset;
            mPageSize = static_cast<off64_t>(bytes.size());
            mStage = Stage::kHeaderRead;
        } else if (mStage == Stage::kHeaderRead && offset == mFound + mPageSize) {
            // The lacing table holds the sizes of what follows it.
            mPageSize +=
                    std::accumulate(bytes.begin(), bytes.end(), static_cast<off64_t>(bytes.size()));
            mStage = Stage::kPageMeasured;
        } else {
            mStage = Stage::kOther;
            mAhead = 0;
        }
    }

    /** Searches that were not done in full since this was called last. */
    uint64_t takeRounds() { return std::exchange(mRounds, 0); }

    /** Where the page lies that was found last. */
    off64_t found() const { return mFound; }

  private:
    /** Shorter searches are quick enough. */
    static constexpr off64_t kLeast = 1 << 16;

    enum class Stage { kOther, kSearching, kHeaderRead, kPageMeasured };

    Stage mStage = Stage::kOther;
    off64_t mBegin = 0;
    off64_t mFound = 0;
    off64_t mPageSize = 0;
    off64_t mAhead = 0;
    uint64_t mRounds = 0;
};

}  // namespace ogmprobe
