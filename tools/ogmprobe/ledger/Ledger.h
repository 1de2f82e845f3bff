// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/LossReason.h"

namespace ogmprobe {

/** The losses for one reason. */
struct Loss {
    LossReason reason = LossReason::kUnknown;
    uint64_t count = 0;
    /** Where in the file the first and the last one begin. */
    uint64_t offset = 0;
    uint64_t lastOffset = 0;
    /** The times of their pages. */
    std::optional<int64_t> timeUs;
    std::optional<int64_t> lastTimeUs;
};

/** What happened to the packets of one stream, or to the frames of re-framed audio. */
struct Ledger {
    uint32_t serial = 0;
    std::optional<uint64_t> track;
    /** Whether frames are counted instead of packets. */
    bool countsFrames = false;
    uint64_t inFile = 0;
    uint64_t returned = 0;
    /** How many of those returned differ from the file. */
    uint64_t changed = 0;
    /**
     * Buffers that repeat an earlier one, and buffers that match no packet or frame of the file.
     */
    uint64_t repeated = 0;
    uint64_t foreign = 0;
    std::vector<Loss> losses;

    /** Returns the losses for no known reason. */
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
