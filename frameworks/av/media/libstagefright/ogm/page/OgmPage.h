// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace android {

/** The header of an Ogg page (RFC 3533, section 6), without the checksum, which is not verified. */
struct OgmPage {
    static constexpr size_t kFixedHeaderSize = 27;
    static constexpr size_t kMaxSegments = 255;

    static constexpr uint8_t kContinuedPacket = 0x01;
    static constexpr uint8_t kFirstPage = 0x02;

    uint64_t mGranulePosition = 0;
    uint32_t mSerialNo = 0;
    uint32_t mPageNo = 0;
    uint8_t mFlags = 0;
    uint8_t mNumSegments = 0;
    /** Only the first mNumSegments values are set and belong to the page. */
    std::array<uint8_t, kMaxSegments> mLacing;
    /** Number of packets that end on the page: of lacing values below 255. */
    uint32_t mNumPackets = 0;

    /** Number of bytes before the body. */
    int64_t headerSize() const { return int64_t{kFixedHeaderSize} + mNumSegments; }
};

}  // namespace android
