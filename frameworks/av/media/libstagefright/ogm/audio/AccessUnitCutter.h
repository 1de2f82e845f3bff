// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "audio/ElementaryStream.h"
#include "base/ByteView.h"
#include "base/PieceAllocator.h"

namespace android::ogm {

/**
 * Cuts the frames of a codec out of an elementary stream. All cutters take the same steps: find the
 * frame, determine its size, take it, and get the time of the bytes taken. They differ in how they
 * determine the size and in which bytes they charge to the frame's time.
 */
class AccessUnitCutter {
  public:
    virtual ~AccessUnitCutter() = default;

    /** Where the first frame may begin in the first bytes of a stream; nothing if nowhere. */
    virtual std::optional<size_t> findFirstSync(ByteView bytes) const = 0;

    /** Takes the next complete access unit; nothing if there is none yet. */
    virtual std::optional<AccessUnit> dequeueAccessUnit(ElementaryStream* stream,
                                                        PieceAllocator* allocator) = 0;
};

/** The cutter for a stream type; null for one whose packets are returned unchanged. */
std::unique_ptr<AccessUnitCutter> makeAccessUnitCutter(uint32_t streamType);

/**
 * Appends bytes with the time `timeUs` to a stream. If the stream is empty, the bytes before the
 * first sync word are dropped, and without a sync word nothing is appended and the result is false.
 * The bytes may be moved away.
 */
bool appendAudioData(const AccessUnitCutter& cutter, ElementaryStream* stream, ByteBuffer* bytes,
                     int64_t timeUs);

}  // namespace android::ogm
