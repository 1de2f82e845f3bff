// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "Bytes.h"
#include "OgmFile.h"

namespace android::ogm::test {

/** How packets are put on pages. */
enum class PageLayout { kOnePacketAPage, kManyPacketsAPage, kPacketsOverPages };

inline constexpr uint64_t kGranulePerPage = 1000;

/** The part of a packet that is on one page. */
struct PacketPiece {
    bool beginsPacket;
    Bytes bytes;
};

/**
 * Adds the packets on pages whose granule positions rise by kGranulePerPage. Then adds a page with
 * another packet, because the last page of a stream is never read. Returns the pieces on the other
 * pages.
 */
std::vector<PacketPiece> addPackets(OgmFile& file, uint32_t serialNo,
                                    const std::vector<Bytes>& packets, PageLayout layout);

}  // namespace android::ogm::test
