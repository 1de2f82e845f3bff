// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** Where in the file a seek goes, and how the scan for its time proceeds. */
namespace android::ogm {

/** How far before its target reading starts after a seek, in us. */
inline constexpr int64_t kSeekLeadUs = 3'000'000;

enum class SeekGoal {
    /** The first data page. */
    kStart,
    /** The end of the data. */
    kEnd,
    /** A place that a scan has to find. */
    kScan,
};

/** `durationUs` is 0 when it is not known. */
SeekGoal chooseSeekGoal(int64_t timeUs, int64_t durationUs);

/**
 * The offset of a time in a file whose data pages have the same bitrate from the first to the last.
 * All times in us, all others in bytes.
 */
int64_t estimateOffset(int64_t targetUs, int64_t durationUs, int64_t firstDataPageOffset,
                       int64_t dataSourceSize);

/** Where the next scan begins when the last one began at `offset`; 0 at the latest. */
int64_t stepBackFrom(int64_t offset);

/** Whether a scan that ended at `reachedUs` must be repeated from further in front. */
bool isScanTooLate(int64_t reachedUs, int64_t targetUs);

}  // namespace android::ogm
