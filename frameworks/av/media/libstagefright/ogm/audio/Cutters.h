// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/ByteView.h"

/**
 * Where the frames of a re-framed audio codec begin, and how long they are.
 *
 * The cutters of OgmTrack go through the same steps: find the frame, measure it, take it, and ask
 * for the time of the bytes taken. They differ in how a frame is measured and in which bytes are
 * charged to its time.
 */
namespace android::ogm {

/** First plausible MPEG audio header; nothing when there is none or no bytes. */
std::optional<size_t> findMpegAudioSync(ByteView data);

/** First AC-3 sync word at or after `from`. */
std::optional<size_t> findAc3Sync(ByteView data, size_t from);

struct Ac3Frame {
    enum class Kind { kFrame, kBadRate, kBadBitStreamId };
    Kind kind;
    /** Bytes, for kFrame: 0 for frmsizecod 37, which the table has no row for. */
    uint16_t size;
    /** bsid, for the message of kBadBitStreamId. */
    uint8_t bsid;
};

/**
 * Reads the start of an AC-3 or E-AC-3 frame (ATSC A/52) at the beginning of `data`. Ends the
 * process when the data end before frmsizecod, that is with less than 5 bytes.
 */
Ac3Frame parseAc3Frame(ByteView data);

/** First DTS sync word that a stream may begin with: a core of 16 bits or a substream. */
std::optional<size_t> findDtsStart(ByteView data);

/** First DTS sync word of any form at or after `from` that has a byte behind it. */
std::optional<size_t> findDtsSync(ByteView data, size_t from);

}  // namespace android::ogm
