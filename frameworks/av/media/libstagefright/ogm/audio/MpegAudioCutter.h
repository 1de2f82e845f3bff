// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "audio/AccessUnitCutter.h"
#include "base/Format.h"

namespace android::ogm {

/** First plausible MPEG audio header; nothing if there is none. */
std::optional<size_t> findMpegAudioSync(ByteView data);

/** Cuts frames of MPEG audio (ISO/IEC 11172-3) that match a header found twice in a row. */
class MpegAudioCutter final : public AccessUnitCutter {
  public:
    std::optional<size_t> findFirstSync(ByteView bytes) const override;
    std::optional<AccessUnit> dequeueAccessUnit(ElementaryStream* stream,
                                                PieceAllocator* allocator) override;

    /** The format of the first frame; null before that. */
    AMediaFormat* format() const { return mFormat.get(); }

  private:
    bool lock(ElementaryStream* stream, uint64_t* offset);

    /** The header that all frames must match; 0 until it is found. A seek does not reset it. */
    uint32_t mMP3Header = 0;
    FormatPtr mFormat;
};

}  // namespace android::ogm
