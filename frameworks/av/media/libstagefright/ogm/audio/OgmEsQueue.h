// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/**
 * Tracks of most stream types have an elementary-stream queue. Only its effects that can be
 * observed are here: its log line, and that a discontinuity does not reset a track without one.
 * Access units are cut elsewhere.
 */
namespace android::ogm {

/** Whether tracks of a stream type have a queue. */
bool hasEsQueue(uint32_t streamType);

/** Logs the set-up of the queue if the stream type has a special one. */
void setUpEsQueue(uint32_t streamType);

}  // namespace android::ogm
