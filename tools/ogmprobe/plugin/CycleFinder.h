// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ogmprobe {

/** Detects that a sequence repeats itself, in rounds of up to 1024 elements. */
class CycleFinder {
  public:
    void clear() { mCount = mAnchor = mPeriod = mMatched = 0; }

    void add(uint64_t element) {
        if (mPeriod != 0 && element == past(mPeriod)) {
            ++mMatched;
        } else {
            mPeriod = mMatched = 0;
            const uint64_t distance = mCount - mAnchor;
            if (mCount != 0 && distance <= kLongest && element == past(distance)) {
                mPeriod = distance;
                mMatched = 1;
            }
        }
        // The element to compare with is replaced from time to time, because the first ones may be
        // before the cycle.
        if ((mCount & (mCount - 1)) == 0 && mPeriod == 0) {
            mAnchor = mCount;
        }
        mPast[mCount++ % kLongest] = element;
    }

    /** Returns the elements of one round; 0 without repetition. */
    uint64_t period() const { return mPeriod; }
    /** Returns how often the round has been repeated without a difference. */
    uint64_t rounds() const { return mPeriod == 0 ? 0 : mMatched / mPeriod; }

  private:
    static constexpr uint64_t kLongest = 1024;

    uint64_t past(uint64_t distance) const { return mPast[(mCount - distance) % kLongest]; }

    std::array<uint64_t, kLongest> mPast{};
    uint64_t mCount = 0;
    uint64_t mAnchor = 0;
    uint64_t mPeriod = 0;
    uint64_t mMatched = 0;
};

}  // namespace ogmprobe
