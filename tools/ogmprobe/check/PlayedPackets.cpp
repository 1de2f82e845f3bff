// SPDX-License-Identifier: Apache-2.0
#include "check/PlayedPackets.h"

#include <algorithm>

#include "check/Thresholds.h"
#include "text/TimeArithmetic.h"
#include "text/TimeUnits.h"

namespace ogmprobe::check {
namespace {

constexpr size_t kHeadBytes = 65536;
constexpr double kBits = 8;

}  // namespace

void PlayedPackets::noteTime(int64_t timeUs) {
    if (mCount > 0 && timeUs == mBeforeUs) {
        ++mShared;
        ++mRun;
    } else {
        if (mRun > 1) {
            mLongestStepUs = std::max(mLongestStepUs, timeDifferenceUs(timeUs, mBeforeUs));
        }
        mRun = 1;
    }
    mLongestRun = std::max(mLongestRun, mRun);
    mBeforeUs = timeUs;
}

void PlayedPackets::add(const Packet& packet) {
    noteTime(packet.timeUs);
    mLeastUs = mCount == 0 ? packet.timeUs : std::min(mLeastUs, packet.timeUs);
    mMostUs = mCount == 0 ? packet.timeUs : std::max(mMostUs, packet.timeUs);
    if (packet.isSync) {
        const int64_t before = mSyncCount == 0 ? mLeastUs : mLastSyncUs;
        mLongestUs = std::max(mLongestUs, timeDifferenceUs(packet.timeUs, before));
        mLastSyncUs = packet.timeUs;
        ++mSyncCount;
    }
    const size_t room = kHeadBytes - mHead.size();
    const size_t taken = std::min(room, packet.bytes.size());
    mHead.insert(mHead.end(), packet.bytes.begin(),
                 packet.bytes.begin() + static_cast<std::ptrdiff_t>(taken));
    mBytes += packet.bytes.size();
    ++mCount;
}

std::optional<double> PlayedPackets::bitrate() const {
    const int64_t spanUs = timeDifferenceUs(mMostUs, mLeastUs);
    if (spanUs < threshold::kMinBitrateSpanUs) {
        return std::nullopt;
    }
    return static_cast<double>(mBytes) * kBits * static_cast<double>(kUsPerSecond) /
           static_cast<double>(spanUs);
}

int64_t PlayedPackets::longestWithoutSyncUs() const {
    return mSyncCount == 0 ? 0 : std::max(mLongestUs, timeDifferenceUs(mMostUs, mLastSyncUs));
}

}  // namespace ogmprobe::check
