// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "ledger/LedgerBuild.h"
#include "sync/GranuleReading.h"

namespace ogmprobe {

/**
 * Returns how much faster the granule positions of an audio stream rise than its samples are
 * played, in millionths. A player that follows the pages' times drops or repeats this share of the
 * samples. Returns nothing if the file is too short or does not show how long its packets last.
 */
std::optional<double> contentDriftOf(const std::vector<PageGroup>& groups,
                                     const StreamAccount& account, const StreamHeader& header,
                                     GranuleReading reading);

}  // namespace ogmprobe
