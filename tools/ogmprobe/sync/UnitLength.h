// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "explain/StreamHeader.h"
#include "ledger/StreamUnits.h"

namespace ogmprobe {

/**
 * Returns how many granule positions a packet or frame lasts; nothing if the file does not show it:
 *
 *  - a frame of MPEG audio, AC-3 or DTS: its samples;
 *  - a packet whose header states a length: that length;
 *  - a packet of video without one: a frame;
 *  - a packet of PCM without one: its bytes by channels and bits per sample.
 */
std::optional<int64_t> lengthOf(const FileUnit& unit, const UnitKind& kind,
                                const StreamHeader& header);

}  // namespace ogmprobe
