// SPDX-License-Identifier: Apache-2.0
#include "OgmPacketBuffer.h"

#include <cstring>

namespace android::ogm {

namespace {

constexpr size_t kGrowth = 65536;

constexpr size_t roundedCapacity(size_t needed) {
    return (needed + kGrowth - 1) / kGrowth * kGrowth;
}

/** As memcpy, which does not take the null that an empty view may hold. */
void copyBytes(uint8_t* destination, ByteView bytes) {
    if (!bytes.empty()) {
        std::memcpy(destination, bytes.data(), bytes.size());
    }
}

/** Gives the range a new buffer of `capacity` bytes; false, and nothing changed, without memory. */
bool moveToLarger(sp<ABuffer>* buffer, size_t capacity) {
    const sp<ABuffer> larger = new ABuffer(capacity);
    if (larger->capacity() < capacity) {
        return false;
    }
    const ByteView held(*buffer);
    copyBytes(larger->base(), held);
    larger->setRange(0, held.size());
    *buffer = larger;
    return true;
}

/** Moves the range to the start of its buffer. */
void compact(ABuffer& buffer) {
    std::memmove(buffer.base(), buffer.data(), buffer.size());
    buffer.setRange(0, buffer.size());
}

}  // namespace

std::optional<size_t> appendBytes(sp<ABuffer>* buffer, ByteView bytes) {
    const size_t held = ByteView(*buffer).size();
    const size_t needed = held + bytes.size();
    std::optional<size_t> grown;
    if (*buffer == nullptr || needed > (*buffer)->capacity()) {
        grown = roundedCapacity(needed);
        if (!moveToLarger(buffer, *grown)) {
            return std::nullopt;
        }
    } else if ((*buffer)->offset() + needed > (*buffer)->capacity()) {
        compact(**buffer);
    }
    copyBytes((*buffer)->data() + held, bytes);
    (*buffer)->setRange((*buffer)->offset(), needed);
    return grown;
}

void dropFront(ABuffer& buffer, size_t size) {
    buffer.setRange(buffer.offset() + size, buffer.size() - size);
}

}  // namespace android::ogm
