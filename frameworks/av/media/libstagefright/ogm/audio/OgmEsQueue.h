// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/**
 * What can be seen of the elementary-stream queue that tracks of most stream types have: its line
 * in the log, and that a track without one is not reset. Access units are cut elsewhere.
 */
namespace android::ogm {

/** Whether tracks of a stream type have a queue. */
bool hasEsQueue(uint32_t streamType);

/** Logs how the queue of a stream type is set up, if that is special. */
void setUpEsQueue(uint32_t streamType);

}  // namespace android::ogm
