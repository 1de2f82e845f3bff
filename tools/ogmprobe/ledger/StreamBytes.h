// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "explain/OggScanner.h"

namespace ogmprobe {

/** Reads pieces of a file as one stream. */
class StreamBytes {
  public:
    /** The scanner must outlive this object. */
    explicit StreamBytes(OggScanner& scanner) : mScanner(scanner) {}

    /** Appends bytes. `piece` identifies them. */
    void append(size_t piece, uint64_t fileOffset, uint64_t size);
    uint64_t size() const { return mSize; }

    /** Returns the existing bytes of the range; valid until the next call. Throws `ProbeError`. */
    std::span<const uint8_t> at(uint64_t position, uint64_t count);
    /** Returns the piece with the byte, which must exist. */
    size_t pieceAt(uint64_t position) const { return mExtents[extentAt(position)].piece; }

  private:
    struct Extent {
        uint64_t position;
        uint64_t fileOffset;
        uint64_t size;
        size_t piece;
    };

    size_t extentAt(uint64_t position) const;

    OggScanner& mScanner;
    std::vector<Extent> mExtents;
    std::vector<uint8_t> mJoined;
    uint64_t mSize = 0;
};

}  // namespace ogmprobe
