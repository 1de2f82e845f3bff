// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ogmprobe {

/** Builds the headers of file formats that store the least significant byte first. */
class LittleEndian {
  public:
    LittleEndian& text(std::string_view characters) {
        mBytes.insert(mBytes.end(), characters.begin(), characters.end());
        return *this;
    }
    LittleEndian& u16(uint64_t value) { return number(value, 2); }
    LittleEndian& u32(uint64_t value) { return number(value, 4); }
    LittleEndian& u64(uint64_t value) { return number(value, 8); }

    const std::vector<uint8_t>& bytes() const { return mBytes; }

  private:
    LittleEndian& number(uint64_t value, int size) {
        for (int i = 0; i < size; ++i) {
            mBytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        }
        return *this;
    }

    std::vector<uint8_t> mBytes;
};

}  // namespace ogmprobe
