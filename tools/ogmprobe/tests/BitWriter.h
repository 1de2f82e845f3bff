// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace ogmprobe::test {

/** Writes bits, the most significant first. */
class BitWriter {
  public:
    BitWriter& put(uint32_t value, unsigned count) {
        for (; count > 0; --count) {
            if (mUsed % 8 == 0) {
                mBytes.push_back(0);
            }
            mBytes.back() |= static_cast<uint8_t>((value >> (count - 1) & 1U) << (7 - mUsed % 8));
            ++mUsed;
        }
        return *this;
    }

    /** Exp-Golomb codes (ISO/IEC 14496-10, 9.1), the second with a sign. */
    BitWriter& golomb(uint32_t value) {
        unsigned bits = 1;
        while ((value + 1) >> bits != 0) {
            ++bits;
        }
        return put(0, bits - 1).put(value + 1, bits);
    }
    BitWriter& signedGolomb(int32_t value) {
        return golomb(value > 0 ? 2 * static_cast<uint32_t>(value) - 1
                                : 2 * static_cast<uint32_t>(-value));
    }

    const std::vector<uint8_t>& bytes() const { return mBytes; }

  private:
    std::vector<uint8_t> mBytes;
    unsigned mUsed = 0;
};

}  // namespace ogmprobe::test
