// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include <media/stagefright/foundation/ABase.h>

namespace android {

/**
 * Reads numbers of 0 to 32 bits from a byte block, most significant bit first.
 *
 * If too few bits are left, a read consumes them. Reading 0 bits always succeeds and returns 0.
 */
class ABitReader {
  public:
    /** Refers to `size` bytes, which must outlive the reader. */
    ABitReader(const uint8_t* data, size_t size);

    /** Aborts at the end of the data and for more than 32 bits. */
    uint32_t getBits(size_t n);

    /**
     * Returns false, without writing `*out`, at the end of the data and for more than 32 bits. The
     * latter consumes nothing.
     */
    bool getBitsGraceful(size_t n, uint32_t* out);

    /** Skips any number of bits; returns false at the end of the data. */
    bool skipBits(size_t n);

    size_t numBitsLeft() const;

  private:
    bool fill(size_t n);
    uint32_t take(size_t n);
    void consumeAll();

    const uint8_t* mNext;
    const uint8_t* const mEnd;
    // The next mNumBits unread bits, in the low end of mBits; all bits above are 0.
    uint64_t mBits;
    size_t mNumBits;

    DISALLOW_EVIL_CONSTRUCTORS(ABitReader);
};

}  // namespace android
