// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bytes.h"

namespace android::ogm::test {

/** Writes bit fields, most significant bit first. */
class BitWriter {
  public:
    BitWriter& put(uint32_t value, size_t width) {
        for (size_t i = width; i > 0; --i) {
            putBit((value >> (i - 1)) & 1);
        }
        return *this;
    }

    /** Exp-Golomb codes (ISO/IEC 14496-10, 9.1), the second with a sign. */
    BitWriter& golomb(uint32_t value) {
        size_t bits = 1;
        while ((value + 1) >> bits != 0) {
            ++bits;
        }
        return put(0, bits - 1).put(value + 1, bits);
    }
    BitWriter& signedGolomb(int32_t value) {
        return golomb(value > 0 ? 2 * static_cast<uint32_t>(value) - 1
                                : 2 * static_cast<uint32_t>(-value));
    }

    /** The bytes so far; the last one is padded with zero bits. */
    const Bytes& bytes() const { return mBytes; }

  private:
    void putBit(uint32_t bit) {
        if (mUsedBits % 8 == 0) {
            mBytes.push_back(0);
        }
        mBytes.back() |= static_cast<uint8_t>(bit << (7 - mUsedBits % 8));
        ++mUsedBits;
    }

    Bytes mBytes;
    size_t mUsedBits = 0;
};

}  // namespace android::ogm::test
