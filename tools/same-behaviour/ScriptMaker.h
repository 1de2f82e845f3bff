// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "Plan.h"
#include "Random.h"

namespace android::ogm::trace {

/** The focus of a session. */
enum class Theme {
    kMixed,
    kSeeks,
    kStops,
    /** Tracks that were stopped and started again are freed, and the others are read. */
    kFreedAfterRestart,
    /** The extractor is freed before its tracks, all of them stopped. */
    kExtractorFirst,
    /** One track is read while another, made or started, waits. */
    kWaitingTrack,
    kHeldBuffers,
    /** Only the sniff, and the formats of file and tracks. */
    kFormats,
};
inline constexpr size_t kThemes = 8;

std::string_view nameOf(Theme theme);

std::vector<Step> randomScript(Random* random, Theme theme);
/** Opens the file, reads all tracks to their ends, seeks, and reads on. */
std::vector<Step> playerScript();
/** Returns the calls of a fuzz target's input. */
std::vector<Step> scriptOf(const fuzz::SessionInput& input);

}  // namespace android::ogm::trace
