// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Timeline.h"
#include "explain/Finding.h"

namespace ogmprobe::timeline {

/**
 * Adds what a comparison of the file with what came out of it says: the pages of packets, packets
 * that are lost, streams without a track, findings and log lines. All findings are made already.
 */
void addEvidence(const Explanation& explanation, Timeline& timeline);

}  // namespace ogmprobe::timeline
