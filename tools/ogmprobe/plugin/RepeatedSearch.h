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
 * Recognises a plug-in that searches the same junk again and again, so that its searches can be
 * shortened. Such a plug-in searches for a stream's next page, finds a page of another stream after
 * the junk, and continues from where that page would end if there were no junk. If pages have a
 * kilobyte, it searches a hole of a gigabyte a million times, which would take days.
 *
 * It uses only the header of the page that it finds. A shortened search ends at its first byte, and
 * the following reads of the header are answered from the page's real offset.
 */
class RepeatedSearch {
  public:
    /** A search begins there. Returns how far ahead it is known to end; 0: it has to be done. */
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

    /** How far ahead of the requested offset a read that is not a search has to be done. */
    off64_t ahead() const { return mAhead; }

    /** Whether a read there is that of a lacing table, although its size is that of a search. */
    bool isLacingTable(off64_t offset) const {
        return mStage == Stage::kHeaderRead && offset + mAhead == mFound + mPageSize;
    }

    /** The result of such a read, at its real offset. `searchedUpTo`: where a search was before. */
    void read(off64_t offset, std::span<const uint8_t> bytes, off64_t searchedUpTo) {
        if (mStage == Stage::kSearching && offset == searchedUpTo) {
            mFound = offset;
            mPageSize = static_cast<off64_t>(bytes.size());
            mStage = Stage::kHeaderRead;
        } else if (mStage == Stage::kHeaderRead && offset == mFound + mPageSize) {
            // The lacing table has the sizes of the segments after it.
            mPageSize +=
                    std::accumulate(bytes.begin(), bytes.end(), static_cast<off64_t>(bytes.size()));
            mStage = Stage::kPageMeasured;
        } else {
            mStage = Stage::kOther;
            mAhead = 0;
        }
    }

    /** Number of shortened searches since the last call of this function. */
    uint64_t takeRounds() { return std::exchange(mRounds, 0); }

    /** Offset of the latest page that was found. */
    off64_t found() const { return mFound; }

  private:
    /** Shorter searches are fast enough. */
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
