// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace android::ogm::trace {

/**
 * Ends this process with kStoodStill when nothing more is recorded: it computes, waits for a lock,
 * or takes memory without end. Processor time is measured, so that a busy machine changes nothing.
 */
void watchThisProcess();

}  // namespace android::ogm::trace
