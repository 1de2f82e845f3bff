// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>

#include "records/Packet.h"

namespace ogmprobe {

/** The plug-in reads, or hands out, the same over and over. */
class GoesInCircles : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** For commands that keep what a file gives: ends a playing that would fill the memory. */
class PlayLimit {
  public:
    explicit PlayLimit(uint64_t fileSize) : mLimit(kExpansion * fileSize + kSmallFile) {}

    /** Throws `GoesInCircles` when no file can hold so much. */
    void add(const Packet& packet) {
        mPlayed += kPacketCost + packet.bytes.size();
        if (mPlayed > mLimit) {
            throw GoesInCircles("it has handed out many times the bytes of the file");
        }
    }

  private:
    // No file is handed out so often, not even where one track waits for another.
    static constexpr uint64_t kExpansion = 8;
    static constexpr uint64_t kSmallFile = 1 << 20;
    // Empty packets count too.
    static constexpr uint64_t kPacketCost = 1;

    uint64_t mLimit;
    uint64_t mPlayed = 0;
};

}  // namespace ogmprobe
