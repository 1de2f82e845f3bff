// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "Bytes.h"

namespace android::ogm::test {

inline constexpr size_t kPageHeaderSize = 27;
/** Where in the header the size of the lacing table is, one byte. */
inline constexpr size_t kSegmentCountOffset = 26;
/** The largest body: 255 segments of 255 bytes. */
inline constexpr size_t kFullPageBody = size_t{255} * 255;
inline constexpr uint8_t kContinuedPacket = 0x01;
inline constexpr uint8_t kBeginOfStream = 0x02;
inline constexpr uint8_t kEndOfStream = 0x04;
inline constexpr uint64_t kNoGranule = ~uint64_t{0};

/** The checksum of an Ogg page whose checksum field is zero. */
uint32_t oggChecksum(const Bytes& page);

/**
 * One Ogg page under construction. By default the lacing table follows from the packets and the
 * checksum is the right one; every field can be set to something else.
 */
class OggPage {
  public:
    explicit OggPage(uint32_t serialNo) : mSerialNo(serialNo) {}

    OggPage& granule(uint64_t position);
    OggPage& sequence(uint32_t number);
    /** Replaces all header type flags. */
    OggPage& flags(uint8_t flags);
    OggPage& beginOfStream() { return flags(mFlags | kBeginOfStream); }
    OggPage& endOfStream() { return flags(mFlags | kEndOfStream); }
    OggPage& continued() { return flags(mFlags | kContinuedPacket); }
    OggPage& version(uint8_t version);
    OggPage& capturePattern(std::string_view pattern);
    /** A fixed value instead of the right checksum. */
    OggPage& checksum(uint32_t value);

    /** Adds a packet, or the end of a packet, that ends on this page. */
    OggPage& packet(const Bytes& bytes);
    /** Adds the beginning or middle of a packet; the size must be a multiple of 255. */
    OggPage& openPacket(const Bytes& bytes);
    /** Adds one lacing value without body bytes. */
    OggPage& lacing(uint8_t value);
    /** Adds body bytes without a lacing value. */
    OggPage& body(const Bytes& bytes);
    /** Writes this number of segments, whatever the lacing table has. */
    OggPage& segmentCount(uint8_t count);

    Bytes bytes() const;
    size_t size() const { return kPageHeaderSize + mLacing.size() + mBody.size(); }
    /** Offset of the body within the page. */
    size_t bodyOffset() const { return kPageHeaderSize + mLacing.size(); }

  private:
    std::string mCapturePattern = "OggS";
    uint8_t mVersion = 0;
    uint8_t mFlags = 0;
    uint64_t mGranule = 0;
    uint32_t mSerialNo;
    uint32_t mSequence = 0;
    std::optional<uint32_t> mChecksum;
    std::optional<uint8_t> mSegmentCount;
    Bytes mLacing;
    Bytes mBody;
};

}  // namespace android::ogm::test
