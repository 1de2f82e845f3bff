// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "ledger/LedgerBuild.h"
#include "sync/GranuleReading.h"

namespace ogmprobe {

/**
 * Returns how much faster the granule positions of an audio stream rise than its samples are
 * played, in millionths: a player that follows the pages' times drops or repeats as much. Returns
 * nothing if the file does not show how long its packets last, or is too short.
 */
std::optional<double> contentDriftOf(const std::vector<PageGroup>& groups,
                                     const StreamAccount& account, const StreamHeader& header,
                                     GranuleReading reading);

}  // namespace ogmprobe
