// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "audio/ElementaryStream.h"
#include "base/ByteView.h"
#include "base/PieceRoom.h"

namespace android::ogm {

/**
 * Cuts the frames of a codec out of an elementary stream. All cutters go through the same steps:
 * find the frame, measure it, take it, and ask for the time of the bytes taken. They differ in how
 * a frame is measured and in which bytes are charged to its time.
 */
class AccessUnitCutter {
  public:
    virtual ~AccessUnitCutter() = default;

    /** Where a frame may begin in bytes that start a stream; nothing when there is no such place.
     */
    virtual std::optional<size_t> findFirstSync(ByteView bytes) const = 0;

    /** Takes the next whole access unit; nothing when there is none yet. */
    virtual std::optional<AccessUnit> dequeueAccessUnit(ElementaryStream* stream,
                                                        PieceRoom* room) = 0;
};

/** The cutter for a stream type; null for one whose packets are handed out as they are. */
std::unique_ptr<AccessUnitCutter> makeAccessUnitCutter(uint32_t streamType);

/**
 * Adds bytes that have the time `timeUs` to a stream; at the start of an empty one those in front
 * of the first sync word are dropped. The bytes may be moved away. Returns false (nothing added)
 * without a sync word.
 */
bool appendAudioData(const AccessUnitCutter& cutter, ElementaryStream* stream, ByteBuffer* bytes,
                     int64_t timeUs);

}  // namespace android::ogm
