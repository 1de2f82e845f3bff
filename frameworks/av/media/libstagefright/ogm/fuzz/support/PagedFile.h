// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "InputReader.h"

/** A file taken apart into its pages, and put together again. */
namespace android::ogm::fuzz {

/** A whole page, or bytes between pages. */
struct FilePiece {
    bool isPage = false;
    /** What is not a page. */
    Bytes junk;

    uint8_t version = 0;
    uint8_t flags = 0;
    uint64_t granule = 0;
    uint32_t serialNo = 0;
    uint32_t sequence = 0;
    uint32_t checksum = 0;
    std::vector<Bytes> packets;
    /** The last packet does not end on the page; its size is a multiple of 255. */
    bool isOpen = false;

    bool beginsStream() const { return isPage && (flags & 2U) != 0 && !packets.empty(); }
};

using PagedFile = std::vector<FilePiece>;

/** Joining the pieces gives the same bytes again. */
PagedFile splitIntoPages(const Bytes& file);

/** Lacing tables follow from the packets; those that do not fit onto their page are left out. */
Bytes joinPages(const PagedFile& pieces);

}  // namespace android::ogm::fuzz
