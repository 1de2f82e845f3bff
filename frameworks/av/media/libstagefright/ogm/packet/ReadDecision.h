// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace android::ogm {

enum class ReadStep {
    kDequeue,
    kEndOfStream,
    kIoError,
    /** Nothing is left to dequeue. The caller's buffer pointer stays as it is. */
    kEndOfData,
};

/**
 * Decides what a read does after it has tried to fill its track's queue. `result` is the status of
 * the last step of filling, `hadCompletePackets` is whether the queue had a complete packet before,
 * and `queued` is the number of packets now.
 *
 * If the queue had a complete packet before, one is returned even if the file has ended or cannot
 * be read. The end of the data is only reported if there was none.
 */
ReadStep decideAfterFilling(int32_t result, bool hadCompletePackets, size_t queued);

}  // namespace android::ogm
