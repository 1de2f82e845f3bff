// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>

#include "audio/AccessUnitCutter.h"

namespace android::ogm {

/** First DTS sync word with which a stream may begin: a 16-bit core or a substream. */
std::optional<size_t> findDtsStart(ByteView data);

/** First DTS sync word of any form at or after `from` that has a byte after it. */
std::optional<size_t> findDtsSync(ByteView data, size_t from);

/** Cuts frames of DTS (ETSI TS 102 114), each of which ends where the next one begins. */
class DtsCutter final : public AccessUnitCutter {
  public:
    std::optional<size_t> findFirstSync(ByteView bytes) const override;
    std::optional<AccessUnit> dequeueAccessUnit(ElementaryStream* stream,
                                                PieceAllocator* allocator) override;
};

}  // namespace android::ogm
