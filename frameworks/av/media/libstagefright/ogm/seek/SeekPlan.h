// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** Decides where in the file a seek goes, and where a scan for its time begins and ends. */
namespace android::ogm {

/** Reading starts this many us before the target of a seek. */
inline constexpr int64_t kSeekLeadUs = 3'000'000;

enum class SeekGoal {
    /** The first data page. */
    kStart,
    /** The end of the data. */
    kEnd,
    /** A page that a scan has to find. */
    kScan,
};

/** `durationUs` is 0 if unknown. */
SeekGoal chooseSeekGoal(int64_t timeUs, int64_t durationUs);

/**
 * Estimates the offset of a time, assuming a constant bitrate from the first data page to the end.
 * Times are in us, offsets in bytes.
 */
int64_t estimateOffset(int64_t targetUs, int64_t durationUs, int64_t firstDataPageOffset,
                       int64_t dataSourceSize);

/** Where the next scan begins if the last one began at `offset`; never below 0. */
int64_t stepBackFrom(int64_t offset);

/** Whether a scan that ended at `reachedUs` must be repeated from an earlier offset. */
bool isScanTooLate(int64_t reachedUs, int64_t targetUs);

}  // namespace android::ogm
