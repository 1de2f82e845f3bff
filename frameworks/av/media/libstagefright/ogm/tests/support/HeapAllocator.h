// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/PieceAllocator.h"

namespace android::ogm::test {

/** Allocates each piece in its own heap block, so that a sanitizer sees an access outside of it. */
class HeapAllocator final : public PieceAllocator {
  public:
    ByteBuffer makePiece(size_t size) override { return ByteBuffer(size); }
};

}  // namespace android::ogm::test
