// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

#include "base/ByteBuffer.h"

namespace android::ogm {

/** Takes the place of a track for a stream without one: drops its packets. */
class PassingPackets {
  public:
    ByteBuffer makePiece(size_t size) {
        mPiece.reset(size);
        return std::move(mPiece);
    }
    void giveBack(ByteBuffer* piece) { mPiece = std::move(*piece); }
    void appendData(ByteBuffer* /* piece */, bool /* isNewPacket */, bool /* isSeeking */) {}

  private:
    /** Kept so that all pieces use the same memory. */
    ByteBuffer mPiece;
};

}  // namespace android::ogm
