// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABitReader.h>

#include "LibraryAssert.h"

namespace android {

namespace {

constexpr size_t kMaxBits = 32;

/** Returns a number whose lowest `n` bits, at most 63, are set. */
uint64_t lowMask(size_t n) {
    return (uint64_t{1} << n) - 1;
}

}  // namespace

ABitReader::ABitReader(const uint8_t* data, size_t size)
    : mNext(data), mEnd(data + size), mBits(0), mNumBits(0) {}

uint32_t ABitReader::getBits(size_t n) {
    uint32_t ret;
    if (!getBitsGraceful(n, &ret)) {
        checkFailed({nullptr, "ABitReader.cpp:56", "CHECK(getBitsGraceful(n, &ret))"});
    }
    return ret;
}

bool ABitReader::getBitsGraceful(size_t n, uint32_t* out) {
    if (n > kMaxBits || !fill(n)) {
        return false;
    }
    *out = take(n);
    return true;
}

bool ABitReader::skipBits(size_t n) {
    if (n > numBitsLeft()) {
        consumeAll();
        return false;
    }
    if (n <= mNumBits) {
        mNumBits -= n;
        mBits &= lowMask(mNumBits);
        return true;
    }
    const size_t beyondReservoir = n - mNumBits;
    mNumBits = 0;
    mBits = 0;
    mNext += beyondReservoir / 8;
    const size_t rest = beyondReservoir % 8;
    fill(rest);
    take(rest);
    return true;
}

size_t ABitReader::numBitsLeft() const {
    return static_cast<size_t>(mEnd - mNext) * 8 + mNumBits;
}

/**
 * Loads `n` bits, at most 32, for take(). If there are too few, consumes all of them and returns
 * false.
 */
bool ABitReader::fill(size_t n) {
    while (mNumBits < n) {
        if (mNext == mEnd) {
            consumeAll();
            return false;
        }
        mBits = mBits << 8 | *mNext++;
        mNumBits += 8;
    }
    return true;
}

/** Takes `n` bits, at most 32, which fill() has loaded. */
uint32_t ABitReader::take(size_t n) {
    mNumBits -= n;
    const auto value = static_cast<uint32_t>(mBits >> mNumBits);
    mBits &= lowMask(mNumBits);
    return value;
}

void ABitReader::consumeAll() {
    mNext = mEnd;
    mBits = 0;
    mNumBits = 0;
}

}  // namespace android
