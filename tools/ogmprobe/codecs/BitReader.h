// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ogmprobe {

/**
 * Reads bits, the most significant first. Past the end it returns zeros, and `isPastEnd` is true.
 */
class BitReader {
  public:
    explicit BitReader(std::span<const uint8_t> bytes) : mBytes(bytes) {}

    /** Returns up to 32 bits. */
    uint32_t take(unsigned count) {
        uint32_t value = 0;
        for (; count > 0; --count) {
            value = value << 1 | bit();
        }
        return value;
    }
    bool flag() { return take(1) != 0; }
    void skip(size_t count) { mPosition += count; }

    /** Return Exp-Golomb codes (ISO/IEC 14496-10, 9.1), the second with a sign. */
    uint32_t unsignedGolomb() {
        unsigned zeros = 0;
        while (zeros < 32 && !isPastEnd() && !flag()) {
            ++zeros;
        }
        return static_cast<uint32_t>((uint64_t{1} << zeros) - 1 + take(zeros));
    }
    int32_t signedGolomb() {
        const uint32_t code = unsignedGolomb();
        const auto magnitude = static_cast<int32_t>(code / 2 + code % 2);
        return code % 2 != 0 ? magnitude : -magnitude;
    }

    bool isPastEnd() const { return mPosition > 8 * mBytes.size(); }

  private:
    uint32_t bit() {
        const size_t position = mPosition++;
        return position < 8 * mBytes.size()
                       ? static_cast<uint32_t>(mBytes[position / 8]) >> (7 - position % 8) & 1U
                       : 0;
    }

    std::span<const uint8_t> mBytes;
    size_t mPosition = 0;
};

}  // namespace ogmprobe
