// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>

#include "records/Packet.h"

namespace ogmprobe {

/** The plug-in reads or returns the same again and again. */
class EndlessRepetition : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** For commands that keep the packets of a file: ends playback that would fill the memory. */
class PlayLimit {
  public:
    explicit PlayLimit(uint64_t fileSize) : mLimit(kExpansion * fileSize + kSmallFile) {}

    /** Throws `EndlessRepetition` when the packets exceed what any file can hold. */
    void add(const Packet& packet) {
        mPlayed += kPacketCost + packet.bytes.size();
        if (mPlayed > mLimit) {
            throw EndlessRepetition("it has returned many times the bytes of the file");
        }
    }

  private:
    // No file returns its bytes this often, not even if one track waits for another.
    static constexpr uint64_t kExpansion = 8;
    static constexpr uint64_t kSmallFile = 1 << 20;
    // Empty packets must reach the limit soon too. In a file each has a byte of a lacing table, and
    // 255 of them a page header, so a file of empty packets stays below the limit.
    static constexpr uint64_t kPacketCost = 8;

    uint64_t mLimit;
    uint64_t mPlayed = 0;
};

}  // namespace ogmprobe
