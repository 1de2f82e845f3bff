// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace android::ogm::trace {

/**
 * Ends this process with kStoodStill if nothing more is recorded, because it computes, waits for a
 * lock, or takes memory without end. It measures processor time, so a busy machine has no effect.
 */
void watchThisProcess();

}  // namespace android::ogm::trace
