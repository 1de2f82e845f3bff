// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "audio/AccessUnitCutter.h"

namespace android::ogm {

/** First AC-3 sync word at or after `from`. */
std::optional<size_t> findAc3Sync(ByteView data, size_t from);

struct Ac3Frame {
    enum class Kind { kFrame, kBadRate, kBadBitStreamId };
    Kind kind;
    /** Frame size in bytes, for kFrame; 0 for frmsizecod 37, for which the table has no row. */
    uint16_t size;
    /** For the message of kBadBitStreamId. */
    uint8_t bsid;
};

/**
 * Parses the AC-3 or E-AC-3 frame header (ATSC A/52) at the beginning of `data`. Ends the process
 * if the data end before frmsizecod, that is, with less than 5 bytes.
 */
Ac3Frame parseAc3Frame(ByteView data);

/** Cuts frames of AC-3 and E-AC-3, whose headers contain their size. */
class Ac3Cutter final : public AccessUnitCutter {
  public:
    std::optional<size_t> findFirstSync(ByteView bytes) const override;
    std::optional<AccessUnit> dequeueAccessUnit(ElementaryStream* stream,
                                                PieceAllocator* allocator) override;
};

}  // namespace android::ogm
