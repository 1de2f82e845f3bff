// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Timeline.h"
#include "explain/Finding.h"

namespace ogmprobe::timeline {

/**
 * Adds the results of comparing the file with the returned packets: the pages of packets, lost
 * packets, streams without a track, findings and log lines. All findings must have been made.
 */
void addEvidence(const Explanation& explanation, Timeline& timeline);

}  // namespace ogmprobe::timeline
