// SPDX-License-Identifier: Apache-2.0
#include "ledger/StreamBytes.h"

#include <algorithm>

namespace ogmprobe {

void StreamBytes::append(size_t piece, uint64_t fileOffset, uint64_t size) {
    if (size > 0) {
        mExtents.push_back({mSize, fileOffset, size, piece});
        mSize += size;
    }
}

size_t StreamBytes::extentAt(uint64_t position) const {
    const auto after = std::upper_bound(
            mExtents.begin(), mExtents.end(), position,
            [](uint64_t place, const Extent& extent) { return place < extent.position; });
    return static_cast<size_t>(after - mExtents.begin()) - 1;
}

std::span<const uint8_t> StreamBytes::at(uint64_t position, uint64_t count) {
    count = position < mSize ? std::min(count, mSize - position) : 0;
    if (count == 0) {
        return {};
    }
    size_t index = extentAt(position);
    const Extent& first = mExtents[index];
    const uint64_t skipped = position - first.position;
    if (first.size - skipped >= count) {
        return mScanner.bytes(first.fileOffset + skipped, count);
    }
    mJoined.clear();
    for (uint64_t from = skipped; mJoined.size() < count; from = 0, ++index) {
        const Extent& extent = mExtents[index];
        const auto part = mScanner.bytes(extent.fileOffset + from,
                                         std::min(extent.size - from, count - mJoined.size()));
        mJoined.insert(mJoined.end(), part.begin(), part.end());
    }
    return mJoined;
}

}  // namespace ogmprobe
