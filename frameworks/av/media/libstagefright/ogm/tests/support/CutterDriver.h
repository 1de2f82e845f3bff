// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "AccessUnit.h"
#include "Bytes.h"
#include "HeapAllocator.h"
#include "audio/AccessUnitCutter.h"
#include "audio/ElementaryStream.h"

namespace android::ogm::test {

/** Ranges of an elementary stream: time and length. */
using Ranges = std::vector<std::pair<int64_t, uint64_t>>;
Ranges rangesOf(const ElementaryStream& stream);

/** An audio stream and the cutter for its type; it is fed with pieces. */
class CutterDriver {
  public:
    explicit CutterDriver(uint32_t streamType) : mCutter(makeAccessUnitCutter(streamType)) {}

    /** Appends from a heap block of exactly that size. Returns whether the bytes were taken. */
    bool append(const Bytes& bytes, int64_t timeUs);
    /** The next access unit; nothing if there is none. */
    std::optional<AccessUnit> next();
    /** Access units until there is none, at most `limit`. */
    std::vector<AccessUnit> cut(size_t limit = 100000);
    /** Appends, and cuts if the bytes were taken. */
    std::vector<AccessUnit> feed(const Bytes& piece, int64_t timeUs);

    /** The bytes that have been appended and not taken yet. */
    Bytes buffered() const;
    Ranges ranges() const { return rangesOf(mStream); }
    /** Puts bytes into the stream unchanged; append() would drop bytes before a sync word. */
    void place(const Bytes& bytes, int64_t timeUs);
    /** Drops the stream, as a seek does. */
    void clear() { mStream.clear(); }

  private:
    const std::unique_ptr<AccessUnitCutter> mCutter;
    ElementaryStream mStream;
    HeapAllocator mAllocator;
};

}  // namespace android::ogm::test
