// SPDX-License-Identifier: Apache-2.0
#include "OggPage.h"

#include <stdexcept>

namespace android::ogm::test {
namespace {

constexpr size_t kChecksumOffset = 22;
constexpr size_t kFullSegment = 255;

}  // namespace

uint32_t oggChecksum(const Bytes& page) {
    constexpr uint32_t kPolynomial = 0x04C11DB7;
    uint32_t checksum = 0;
    for (const uint8_t byte : page) {
        checksum ^= static_cast<uint32_t>(byte) << 24;
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (checksum & 0x80000000U) != 0;
            checksum = (checksum & 0x7FFFFFFFU) << 1;
            if (carry) {
                checksum ^= kPolynomial;
            }
        }
    }
    return checksum;
}

OggPage& OggPage::granule(uint64_t position) {
    mGranule = position;
    return *this;
}

OggPage& OggPage::sequence(uint32_t number) {
    mSequence = number;
    return *this;
}

OggPage& OggPage::flags(uint8_t flags) {
    mFlags = flags;
    return *this;
}

OggPage& OggPage::version(uint8_t version) {
    mVersion = version;
    return *this;
}

OggPage& OggPage::capturePattern(std::string_view pattern) {
    mCapturePattern = pattern;
    return *this;
}

OggPage& OggPage::checksum(uint32_t value) {
    mChecksum = value;
    return *this;
}

OggPage& OggPage::packet(const Bytes& bytes) {
    mLacing.insert(mLacing.end(), bytes.size() / kFullSegment, kFullSegment);
    mLacing.push_back(static_cast<uint8_t>(bytes.size() % kFullSegment));
    append(mBody, bytes);
    return *this;
}

OggPage& OggPage::openPacket(const Bytes& bytes) {
    if (bytes.empty() || bytes.size() % kFullSegment != 0) {
        throw std::invalid_argument("an open packet fills whole segments");
    }
    mLacing.insert(mLacing.end(), bytes.size() / kFullSegment, kFullSegment);
    append(mBody, bytes);
    return *this;
}

OggPage& OggPage::lacing(uint8_t value) {
    mLacing.push_back(value);
    return *this;
}

OggPage& OggPage::body(const Bytes& bytes) {
    append(mBody, bytes);
    return *this;
}

OggPage& OggPage::segmentCount(uint8_t count) {
    mSegmentCount = count;
    return *this;
}

Bytes OggPage::bytes() const {
    if (mLacing.size() > kFullSegment) {
        throw std::length_error("a page has at most 255 segments");
    }
    Bytes page = bytesOf(mCapturePattern);
    page.push_back(mVersion);
    page.push_back(mFlags);
    appendLittleEndian(page, mGranule, 8);
    appendLittleEndian(page, mSerialNo, 4);
    appendLittleEndian(page, mSequence, 4);
    appendLittleEndian(page, 0, 4);
    page.push_back(mSegmentCount.value_or(static_cast<uint8_t>(mLacing.size())));
    append(page, mLacing);
    append(page, mBody);

    const uint32_t checksum = mChecksum ? *mChecksum : oggChecksum(page);
    for (size_t i = 0; i < 4; ++i) {
        page[kChecksumOffset + i] = static_cast<uint8_t>((checksum >> (8 * i)) & 0xFF);
    }
    return page;
}

}  // namespace android::ogm::test
