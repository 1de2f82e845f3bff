// SPDX-License-Identifier: Apache-2.0
#include "CutterDriver.h"

#include "Views.h"

namespace android::ogm::test {

Ranges rangesOf(const ElementaryStream& stream) {
    Ranges all;
    for (size_t i = 0; i < stream.ranges().size(); ++i) {
        const RangeInfo& range = stream.ranges()[i];
        all.emplace_back(range.mTimestampUs, range.mLength);
    }
    return all;
}

bool CutterDriver::append(const Bytes& bytes, int64_t timeUs) {
    ByteBuffer exact(viewOf(bytes));
    return appendAudioData(*mCutter, &mStream, &exact, timeUs);
}

std::optional<AccessUnit> CutterDriver::next() {
    const std::optional<android::AccessUnit> cut =
            mCutter->dequeueAccessUnit(&mStream, &mAllocator);
    if (!cut) {
        return std::nullopt;
    }
    AccessUnit unit;
    unit.bytes = bytesOf(cut->bytes);
    if (cut->timeUs >= 0) {
        unit.timeUs = cut->timeUs;
    }
    return unit;
}

std::vector<AccessUnit> CutterDriver::cut(size_t limit) {
    std::vector<AccessUnit> units;
    while (units.size() < limit) {
        std::optional<AccessUnit> unit = next();
        if (!unit) {
            break;
        }
        units.push_back(std::move(*unit));
    }
    return units;
}

std::vector<AccessUnit> CutterDriver::feed(const Bytes& piece, int64_t timeUs) {
    return append(piece, timeUs) ? cut() : std::vector<AccessUnit>{};
}

Bytes CutterDriver::buffered() const {
    return bytesOf(mStream.view());
}

void CutterDriver::place(const Bytes& bytes, int64_t timeUs) {
    ByteBuffer buffer(viewOf(bytes));
    mStream.append(&buffer, timeUs);
}

}  // namespace android::ogm::test
