// SPDX-License-Identifier: Apache-2.0
#include "explain/OggFile.h"

#include <algorithm>
#include <utility>

#include "explain/OggScanner.h"

namespace ogmprobe {

OggFile::OggFile(const std::string& path) {
    OggScanner scanner(path);
    mSize = scanner.size();
    uint64_t offset = 0;
    while (offset < mSize) {
        const uint64_t start = scanner.findPage(offset);
        if (start > offset) {
            mJunk.push_back({offset, start - offset});
        }
        if (start == mSize) {
            return;
        }
        OggPage page = scanner.page(start, mPieces);
        for (size_t i = page.firstPiece; i < page.endPiece; ++i) {
            mPieces[i].page = static_cast<uint32_t>(mPages.size());
        }
        offset = page.end();
        addPage(std::move(page));
    }
}

void OggFile::addPage(OggPage page) {
    const size_t index = mPages.size();
    // If the file ends within a header, the serial number may be missing.
    const bool hasHeader = page.offset + page.headerSize <= mSize;
    if (page.isReadable() && hasHeader) {
        OggStream& stream = mStreams[page.serial];
        stream.serial = page.serial;
        if (!page.beginsStream()) {
            stream.dataPages.push_back(index);
        } else if (!stream.announcement) {
            stream.announcement = index;
        }
    }
    mPages.push_back(std::move(page));
}

std::optional<size_t> OggFile::pageAt(int64_t offset) const {
    if (offset < 0) {
        return std::nullopt;
    }
    const auto position = static_cast<uint64_t>(offset);
    const auto after = std::upper_bound(
            mPages.begin(), mPages.end(), position,
            [](uint64_t place, const OggPage& page) { return place < page.offset; });
    if (after == mPages.begin() || position >= std::prev(after)->end()) {
        return std::nullopt;
    }
    return std::prev(after) - mPages.begin();
}

std::optional<size_t> OggFile::pieceAt(int64_t offset, uint64_t size) const {
    auto piece = std::lower_bound(mPieces.begin(), mPieces.end(), offset,
                                  [](const OggPiece& candidate, int64_t place) {
                                      return static_cast<int64_t>(candidate.offset) < place;
                                  });
    while (piece != mPieces.end() && static_cast<int64_t>(piece->offset) == offset) {
        if (piece->size == size) {
            return piece - mPieces.begin();
        }
        ++piece;
    }
    return std::nullopt;
}

const StreamHeader* OggFile::headerOf(uint32_t serial) const {
    const auto stream = mStreams.find(serial);
    if (stream == mStreams.end() || !stream->second.announcement) {
        return nullptr;
    }
    const auto& header = mPages[*stream->second.announcement].announced;
    return header ? &*header : nullptr;
}

std::optional<int64_t> OggFile::timeUs(const OggPage& page) const {
    const StreamHeader* header = headerOf(page.serial);
    if (header == nullptr || page.granule == kNoGranule || page.beginsStream()) {
        return std::nullopt;
    }
    return header->timeUs(page.granule);
}

std::optional<int64_t> OggFile::timeBefore(uint64_t offset) const {
    for (auto page = firstPageFrom(offset); page != mPages.begin();) {
        if (const auto time = timeUs(*--page)) {
            return time;
        }
    }
    return std::nullopt;
}

std::optional<int64_t> OggFile::timeAfter(uint64_t offset) const {
    for (auto page = firstPageFrom(offset); page != mPages.end(); ++page) {
        if (const auto time = timeUs(*page)) {
            return time;
        }
    }
    return std::nullopt;
}

std::vector<OggPage>::const_iterator OggFile::firstPageFrom(uint64_t offset) const {
    return std::partition_point(mPages.begin(), mPages.end(),
                                [offset](const OggPage& page) { return page.offset < offset; });
}

}  // namespace ogmprobe
