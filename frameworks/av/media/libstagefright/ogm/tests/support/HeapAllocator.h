// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/PieceAllocator.h"

namespace android::ogm::test {

/** Every piece in a heap block of its own, so that a sanitizer sees a step out of it. */
class HeapAllocator final : public PieceAllocator {
  public:
    ByteBuffer makePiece(size_t size) override { return ByteBuffer(size); }
};

}  // namespace android::ogm::test
