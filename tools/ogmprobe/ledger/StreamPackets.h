// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "explain/OggFile.h"

namespace ogmprobe {

/** A packet of the file. */
struct FilePacket {
    /** Indices into the stream's pieces: from the first up to, but not including, the second. */
    size_t firstPiece = 0;
    size_t endPiece = 0;
    uint64_t size = 0;
    /** Whether its last piece exists and no page is missing in between. */
    bool isWhole = false;
    /** Whether it announces the stream. */
    bool isHeader = false;
    /** Whether it is only a piece of a packet whose beginning is missing. */
    bool isOrphan = false;
    /** Pieces of other packets that the plug-in appends to this one. */
    std::vector<size_t> foreignTail;
};

/** The packets of one serial number, assembled from its pages (RFC 3533, section 5). */
struct StreamPackets {
    /** Indices into the file's pieces, in the order of the file. */
    std::vector<size_t> pieces;
    std::vector<FilePacket> packets;
};

/**
 * Returns packets by serial number, without unreadable pages and pieces beyond the end of the file.
 */
std::map<uint32_t, StreamPackets> packetsOf(const OggFile& file);

}  // namespace ogmprobe
