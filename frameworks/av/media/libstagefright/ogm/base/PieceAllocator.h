// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "base/ByteBuffer.h"

namespace android::ogm {

/** Allocates memory for pieces of packets. */
class PieceAllocator {
  public:
    /** Returns `size` uninitialised bytes; the pointer is non-null even for size 0. */
    virtual ByteBuffer makePiece(size_t size) = 0;

  protected:
    ~PieceAllocator() = default;
};

}  // namespace android::ogm
