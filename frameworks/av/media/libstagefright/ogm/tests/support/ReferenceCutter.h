// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "AccessUnit.h"
#include "Bytes.h"

namespace android::ogm::test {

/**
 * The size of an AC-3 frame that the cutter computes. From frmsizecod 3 on that is the standard's
 * size for the next code, and 0 for 37. `fscod` is 0 to 2, `frmsizecod` 0 to 37.
 */
size_t measuredAc3FrameSize(uint32_t frmsizecod, uint32_t fscod);

/**
 * A second, deliberately simple implementation of the cutters. It copies byte vectors at each step
 * and shares no code with the plug-in. Both get the same random pieces and randomly damaged
 * streams.
 */
class ReferenceCutter {
  public:
    enum class Codec { kMpegAudio, kAc3, kDts };

    /** The outcome of a piece. */
    struct Outcome {
        bool accepted = false;
        std::vector<AccessUnit> units;
        /** An assertion would have ended the process here, or the cutting would never end. */
        bool fatal = false;
    };

    explicit ReferenceCutter(Codec codec) : mCodec(codec) {}

    /** Appends a piece and cuts all units. Must not be called again after a fatal outcome. */
    Outcome feed(const Bytes& piece, int64_t timeUs);

    const Bytes& buffered() const { return mBuffer; }
    std::vector<std::pair<int64_t, uint64_t>> ranges() const;

  private:
    struct Range {
        int64_t timeUs;
        uint64_t length;
    };
    enum class Step { kUnit, kNone, kFatal };

    std::optional<size_t> alignment(const Bytes& piece) const;
    Step cut(AccessUnit& unit);
    Step cutMpegAudio(AccessUnit& unit);
    Step cutAc3(AccessUnit& unit);
    Step cutDts(AccessUnit& unit);
    std::optional<int64_t> fetchTimestamp(uint64_t size);
    void take(size_t offset, size_t size, AccessUnit& unit);

    const Codec mCodec;
    Bytes mBuffer;
    std::deque<Range> mRanges;
    uint32_t mLockedHeader = 0;
};

}  // namespace android::ogm::test
