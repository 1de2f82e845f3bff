// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace android::ogm {

enum class ReadStep {
    kDequeue,
    kEndOfStream,
    kIoError,
    /** Nothing is left to dequeue; a buffer that the caller brought is handed back to it. */
    kEndOfData,
};

/**
 * What a read does once it has tried to fill its track's queue. `result` is that of the last step
 * of filling, `hadCompletePackets` says whether anything could have been taken before it, and
 * `queued` is the number of packets now.
 *
 * A queue that had something to hand out does so whatever happened; the end of the data applies to
 * a read that starts with nothing.
 */
ReadStep decideAfterFilling(int32_t result, bool hadCompletePackets, size_t queued);

}  // namespace android::ogm
