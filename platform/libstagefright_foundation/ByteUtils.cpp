// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ByteUtils.h>

#include <endian.h>

namespace android {

void MakeFourCCString(uint32_t x, char* s) {
    s[0] = static_cast<char>(x >> 24);
    s[1] = static_cast<char>(x >> 16 & 0xff);
    s[2] = static_cast<char>(x >> 8 & 0xff);
    s[3] = static_cast<char>(x & 0xff);
    s[4] = '\0';
}

uint16_t U16_AT(const uint8_t* ptr) {
    return static_cast<uint16_t>(ptr[0] << 8 | ptr[1]);
}

uint32_t U32_AT(const uint8_t* ptr) {
    return static_cast<uint32_t>(U16_AT(ptr)) << 16 | U16_AT(ptr + 2);
}

uint64_t U64_AT(const uint8_t* ptr) {
    return static_cast<uint64_t>(U32_AT(ptr)) << 32 | U32_AT(ptr + 4);
}

uint16_t U16LE_AT(const uint8_t* ptr) {
    return static_cast<uint16_t>(ptr[1] << 8 | ptr[0]);
}

uint32_t U32LE_AT(const uint8_t* ptr) {
    return static_cast<uint32_t>(U16LE_AT(ptr + 2)) << 16 | U16LE_AT(ptr);
}

uint64_t U64LE_AT(const uint8_t* ptr) {
    return static_cast<uint64_t>(U32LE_AT(ptr + 4)) << 32 | U32LE_AT(ptr);
}

uint64_t ntoh64(uint64_t x) {
    return be64toh(x);
}

uint64_t hton64(uint64_t x) {
    return htobe64(x);
}

}  // namespace android
