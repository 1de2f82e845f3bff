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
 * A read that finds too few bits consumes those that are left and marks the reader as over-read.
 * Reading 0 bits always succeeds and gives 0.
 */
class ABitReader {
  public:
    /** Refers to `size` bytes, which must outlive the reader. */
    ABitReader(const uint8_t* data, size_t size);

    /** Aborts at the end of the data and for more than 32 bits. */
    uint32_t getBits(size_t n);

    /**
     * False at the end of the data, and for more than 32 bits, which consumes nothing; `*out` is
     * not written then.
     */
    bool getBitsGraceful(size_t n, uint32_t* out);

    /** The number, or `fallback` where getBitsGraceful() gives false. */
    uint32_t getBitsWithFallback(size_t n, uint32_t fallback);

    /** Skips any number of bits; false at the end of the data. */
    bool skipBits(size_t n);

    /**
     * Puts the lowest `n` (at most 32) bits of `x` back, to be read next. No more may be put back
     * than has been read. Does nothing after an over-read.
     */
    void putBits(uint32_t x, size_t n);

    size_t numBitsLeft() const;

    /** The byte that holds the next unread bit. */
    const uint8_t* data() const;

    /** True after any read or skip that ran out of data. */
    bool overRead() const { return mOverRead; }

  private:
    bool fill(size_t n);
    uint32_t take(size_t n);
    void consumeAll();
    void giveBackByte();

    const uint8_t* const mBegin;
    const uint8_t* mNext;
    const uint8_t* const mEnd;
    // The next mNumBits unread bits, in the low end of mBits; all bits above are 0.
    uint64_t mBits;
    size_t mNumBits;
    bool mOverRead;

    DISALLOW_EVIL_CONSTRUCTORS(ABitReader);
};

}  // namespace android
