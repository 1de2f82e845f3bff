// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "explain/StreamHeader.h"

/**
 * The contents of an Ogg file, read without the plug-in: from page to page, with a search for the
 * next capture pattern where there is none.
 */
namespace ogmprobe {

/** The granule position of a page on which no packet ends. */
constexpr uint64_t kNoGranule = ~uint64_t{0};

struct OggPage {
    uint64_t offset = 0;
    /** Size of header and lacing table. */
    uint64_t headerSize = 0;
    uint64_t bodySize = 0;
    uint8_t version = 0;
    uint8_t flags = 0;
    uint64_t granule = 0;
    uint32_t serial = 0;
    uint32_t sequence = 0;
    /** Number of packets that end on the page. */
    uint32_t packets = 0;
    /** Bytes of the first packet, or piece of a packet, on the page. */
    uint64_t firstPieceSize = 0;
    /** Number of the page's bytes that are beyond the end of the file. */
    uint64_t missingBytes = 0;
    bool checksumRight = true;
    bool beginsWithComment = false;
    /** The header of the stream that the page announces, if any. */
    std::optional<StreamHeader> announced;
    /** Indices into the file's pieces: from the first up to, but not including, the second. */
    size_t firstPiece = 0;
    size_t endPiece = 0;

    uint64_t bodyOffset() const { return offset + headerSize; }
    uint64_t end() const { return bodyOffset() + bodySize; }
    bool continues() const { return (flags & 1U) != 0; }
    bool beginsStream() const { return (flags & 2U) != 0; }
    bool endsStream() const { return (flags & 4U) != 0; }
    /** Returns whether version and flags are those of the format's only version. */
    bool isReadable() const { return version == 0 && flags < 8; }
};

/** A packet, or the part of a packet that is on one page. */
struct OggPiece {
    uint64_t offset = 0;
    uint32_t size = 0;
    /** Index of its page. */
    uint32_t page = 0;
    /** Whether the packet ends with it. */
    bool endsPacket = false;
};

/** Bytes between pages. */
struct JunkRange {
    uint64_t offset = 0;
    uint64_t size = 0;

    uint64_t end() const { return offset + size; }
};

/** The pages of one serial number. */
struct OggStream {
    uint32_t serial = 0;
    /** Indices into the file's pages. */
    std::optional<size_t> announcement;
    std::vector<size_t> dataPages;
};

class OggFile {
  public:
    /** Throws `ProbeError` with `kFile`. */
    explicit OggFile(const std::string& path);

    uint64_t size() const { return mSize; }
    const std::vector<OggPage>& pages() const { return mPages; }
    const std::vector<JunkRange>& junk() const { return mJunk; }
    /** Returns the pieces of all pages, in the order of the file. */
    const std::vector<OggPiece>& pieces() const { return mPieces; }
    /** Returns the streams by serial number. */
    const std::map<uint32_t, OggStream>& streams() const { return mStreams; }

    /** Returns the index of the page that holds the byte. */
    std::optional<size_t> pageAt(int64_t offset) const;
    /** Returns the index of the first piece that begins there and has that size. */
    std::optional<size_t> pieceAt(int64_t offset, uint64_t size) const;
    const StreamHeader* headerOf(uint32_t serial) const;
    /** Returns the time of the page's granule position; nothing if it has none. */
    std::optional<int64_t> timeUs(const OggPage& page) const;
    /** Return the last time of a page before the place, and the first after it. */
    std::optional<int64_t> timeBefore(uint64_t offset) const;
    std::optional<int64_t> timeAfter(uint64_t offset) const;

  private:
    void addPage(OggPage page);
    std::vector<OggPage>::const_iterator firstPageFrom(uint64_t offset) const;

    uint64_t mSize = 0;
    std::vector<OggPage> mPages;
    std::vector<JunkRange> mJunk;
    std::vector<OggPiece> mPieces;
    std::map<uint32_t, OggStream> mStreams;
};

}  // namespace ogmprobe
