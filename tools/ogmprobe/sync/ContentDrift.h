// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "ledger/LedgerBuild.h"
#include "sync/GranuleReading.h"

namespace ogmprobe {

/**
 * How much faster the granule positions of an audio stream rise than its samples go by, in
 * millionths: a player that follows the pages' times drops or repeats as much. Nothing where the
 * file does not tell how long its packets last, or is too short to tell.
 */
std::optional<double> contentDriftOf(const std::vector<PageGroup>& groups,
                                     const StreamAccount& account, const StreamHeader& header,
                                     GranuleReading reading);

}  // namespace ogmprobe
