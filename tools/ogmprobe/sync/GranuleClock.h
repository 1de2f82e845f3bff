// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "explain/StreamHeader.h"

namespace ogmprobe {

/**
 * Converts granule positions to times, by the header of the stream: a video stream counts frames of
 * `time_unit`, audio and text count `samples_per_unit` in each `time_unit` of 100 ns.
 */
class GranuleClock {
  public:
    explicit GranuleClock(const StreamHeader& header);

    /**
     * Returns the time, rounded towards 0; nothing if the header does not say or the time is out of
     * range.
     */
    std::optional<int64_t> timeUs(int64_t granule) const;

  private:
    /** This many units of 100 ns last as long as this many granule positions. */
    uint64_t mUnits = 0;
    uint64_t mGranules = 0;
};

}  // namespace ogmprobe
