// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/LossReason.h"

namespace ogmprobe {

/** What was lost for one reason. */
struct Loss {
    LossReason reason = LossReason::kUnknown;
    uint64_t count = 0;
    /** Where in the file the first and the last of it begin. */
    uint64_t offset = 0;
    uint64_t lastOffset = 0;
    /** The times of their pages. */
    std::optional<int64_t> timeUs;
    std::optional<int64_t> lastTimeUs;
};

/** What became of the packets, or for audio that is framed anew the frames, of one stream. */
struct Ledger {
    uint32_t serial = 0;
    std::optional<uint64_t> track;
    /** Frames are counted, not packets. */
    bool countsFrames = false;
    uint64_t inFile = 0;
    uint64_t handedOut = 0;
    /** Of those handed out: not as they are in the file. */
    uint64_t changed = 0;
    /** Buffers with what came out before, and such with what is no packet or frame of the file. */
    uint64_t repeated = 0;
    uint64_t foreign = 0;
    std::vector<Loss> losses;

    /** Lost for no reason that is known. */
    uint64_t unexplained() const {
        uint64_t count = 0;
        for (const Loss& loss : losses) {
            count += loss.reason == LossReason::kUnknown ? loss.count : 0;
        }
        return count;
    }
    /** "packet" or "frame". */
    const char* noun() const { return countsFrames ? "frame" : "packet"; }
};

}  // namespace ogmprobe
