// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "explain/StreamHeader.h"

namespace ogmprobe {

/**
 * What time a granule position is, by the header of the stream alone: a video stream counts frames
 * of `time_unit`, audio and text count `samples_per_unit` in each `time_unit` of 100 ns.
 */
class GranuleClock {
  public:
    explicit GranuleClock(const StreamHeader& header);

    /** Rounded towards 0; nothing where the header does not tell or the time is out of range. */
    std::optional<int64_t> timeUs(int64_t granule) const;

  private:
    /** So many units of 100 ns are as long as so many granule positions. */
    uint64_t mUnits = 0;
    uint64_t mGranules = 0;
};

}  // namespace ogmprobe
