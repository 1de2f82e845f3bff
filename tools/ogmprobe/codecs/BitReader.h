// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ogmprobe {

/** Takes bits from bytes, the most significant first. Bits past the end are 0. */
class BitReader {
  public:
    explicit BitReader(std::span<const uint8_t> bytes) : mBytes(bytes) {}

    /** At most 32. */
    uint32_t take(unsigned count) {
        uint32_t value = 0;
        for (; count > 0; --count, ++mPosition) {
            const size_t byte = mPosition / 8;
            const uint32_t bit =
                    byte < mBytes.size() ? mBytes[byte] >> (7 - mPosition % 8) & 1U : 0U;
            value = value << 1 | bit;
        }
        return value;
    }

    void skip(unsigned count) { mPosition += count; }
    bool isPastEnd() const { return mPosition > mBytes.size() * 8; }

  private:
    std::span<const uint8_t> mBytes;
    size_t mPosition = 0;
};

}  // namespace ogmprobe
