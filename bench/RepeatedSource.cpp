// SPDX-License-Identifier: Apache-2.0
#include "RepeatedSource.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "OggPage.h"

namespace android::ogm::bench {

namespace {

constexpr std::string_view kCapturePattern = "OggS";
constexpr size_t kGranuleOffset = 6;
constexpr size_t kSerialNoOffset = 14;

size_t pageSize(const uint8_t* page) {
    const size_t segments = page[test::kSegmentCountOffset];
    size_t size = test::kPageHeaderSize + segments;
    for (size_t i = 0; i < segments; ++i) {
        size += page[test::kPageHeaderSize + i];
    }
    return size;
}

/** The unsigned number of that many bytes. */
uint64_t littleEndian(const uint8_t* data, size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) {
        value |= static_cast<uint64_t>(data[i]) << (8 * i);
    }
    return value;
}

uint32_t serialNoOf(const uint8_t* page) {
    return static_cast<uint32_t>(littleEndian(page + kSerialNoOffset, sizeof(uint32_t)));
}

uint64_t granuleOf(const uint8_t* page) {
    return littleEndian(page + kGranuleOffset, sizeof(uint64_t));
}

void putLittleEndian(uint8_t* data, uint64_t value) {
    for (size_t i = 0; i < sizeof(value); ++i) {
        data[i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

}  // namespace

RepeatedSource::RepeatedSource(const Content& content, size_t periodSize, int64_t size)
    : mSize(size) {
    writePages(content, periodSize, [this](const uint8_t* data, size_t count) {
        mBytes.insert(mBytes.end(), data, data + count);
    });
    // A header and a comment page for each stream.
    for (size_t i = 0; i < 2 * content.streams.size(); ++i) {
        mHeaderSize += pageSize(mBytes.data() + mHeaderSize);
    }
    for (size_t page = mHeaderSize; page < mBytes.size(); page += pageSize(&mBytes[page])) {
        mGranulesPerPeriod[serialNoOf(&mBytes[page])] = granuleOf(&mBytes[page]);
    }
}

ssize_t RepeatedSource::readAt(int64_t offset, void* data, size_t size) {
    if (offset >= mSize) {
        return 0;
    }
    const size_t count = std::min(size, static_cast<size_t>(mSize - offset));
    readRun(offset, static_cast<uint8_t*>(data), count);
    return static_cast<ssize_t>(count);
}

void RepeatedSource::readRun(int64_t offset, uint8_t* data, size_t size) const {
    const size_t period = mBytes.size() - mHeaderSize;
    auto place = static_cast<size_t>(offset);
    uint64_t repetition = 0;
    if (place >= mHeaderSize) {
        repetition = (place - mHeaderSize) / period;
        place = mHeaderSize + (place - mHeaderSize) % period;
    }
    const size_t first = std::min(size, mBytes.size() - place);
    memcpy(data, &mBytes[place], first);
    if (first < size) {
        readRun(offset + static_cast<int64_t>(first), data + first, size - first);
    }
    // A page header is read by itself.
    if (size == test::kPageHeaderSize && repetition > 0 &&
        memcmp(data, kCapturePattern.data(), kCapturePattern.size()) == 0) {
        raiseGranule(data, repetition);
    }
}

void RepeatedSource::raiseGranule(uint8_t* header, uint64_t repetition) const {
    const auto perPeriod = mGranulesPerPeriod.find(serialNoOf(header));
    if (perPeriod != mGranulesPerPeriod.end()) {
        putLittleEndian(header + kGranuleOffset,
                        granuleOf(header) + repetition * perPeriod->second);
    }
}

}  // namespace android::ogm::bench
