// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "InputReader.h"

/** Splits a file into pages, and joins them again. */
namespace android::ogm::fuzz {

/** A whole page, or bytes between pages. */
struct FilePiece {
    bool isPage = false;
    /** Bytes that are not a page. */
    Bytes junk;

    uint8_t version = 0;
    uint8_t flags = 0;
    uint64_t granule = 0;
    uint32_t serialNo = 0;
    uint32_t sequence = 0;
    uint32_t checksum = 0;
    std::vector<Bytes> packets;
    /** Whether the last packet continues on a later page; then its size is a multiple of 255. */
    bool isOpen = false;

    bool beginsStream() const { return isPage && (flags & 2U) != 0 && !packets.empty(); }
};

using PagedFile = std::vector<FilePiece>;

/** Joining the pieces gives the same bytes again. */
PagedFile splitIntoPages(const Bytes& file);

/** Computes the lacing tables from the packets; drops packets that do not fit onto their page. */
Bytes joinPages(const PagedFile& pieces);

}  // namespace android::ogm::fuzz
