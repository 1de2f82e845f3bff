// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "Bytes.h"
#include "OgmFile.h"

namespace android::ogm::test {

/** How packets lie on pages. */
enum class PageLayout { kOnePacketAPage, kManyPacketsAPage, kPacketsOverPages };

inline constexpr uint64_t kGranulePerPage = 1000;

/** What of a packet lies on one page. */
struct PacketPiece {
    bool beginsPacket;
    Bytes bytes;
};

/**
 * Adds the packets as pages whose granule positions rise by kGranulePerPage, and a last page with a
 * packet of its own: the last page of a stream is never delivered. Returns the pieces of the other
 * pages.
 */
std::vector<PacketPiece> addPackets(OgmFile& file, uint32_t serialNo,
                                    const std::vector<Bytes>& packets, PageLayout layout);

}  // namespace android::ogm::test
