// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>
#include <sys/types.h>

#include <media/stagefright/foundation/ABase.h>
#include <utils/RefBase.h>

namespace android {

/**
 * A shared block of bytes of fixed size. New storage is not cleared.
 *
 *     sp<ABuffer> buffer = new ABuffer(4096);
 *     if (buffer->data() == nullptr) ...              // out of memory
 */
struct ABuffer : public RefBase {
    /** Out of memory: the size is 0 and data() is null. */
    explicit ABuffer(size_t capacity);

    uint8_t* data() { return static_cast<uint8_t*>(mData); }
    size_t size() const { return mCapacity; }

  protected:
    ~ABuffer() override;

  private:
    void* const mData;
    const size_t mCapacity;

    DISALLOW_EVIL_CONSTRUCTORS(ABuffer);
};

}  // namespace android
