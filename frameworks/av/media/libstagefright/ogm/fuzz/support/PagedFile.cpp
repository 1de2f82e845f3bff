// SPDX-License-Identifier: Apache-2.0
#include "PagedFile.h"

#include <algorithm>
#include <optional>

#include "OggPage.h"
#include "page/PageFormat.h"

namespace android::ogm::fuzz {

namespace {

constexpr size_t kChecksumOffset = 22;
constexpr size_t kFullSegment = kUnterminated;
constexpr size_t kMaxSegments = 255;

void splitBody(ByteView lacing, ByteView body, FilePiece* page) {
    size_t position = 0;
    size_t size = 0;
    for (size_t i = 0; i < lacing.size(); ++i) {
        size += lacing[i];
        page->isOpen = lacing[i] == kUnterminated;
        if (!page->isOpen || i + 1 == lacing.size()) {
            page->packets.push_back(bytesOf(body.from(position).first(size)));
            position += size;
            size = 0;
        }
    }
}

/** The page at the beginning of `data`; nothing if it is incomplete. */
std::optional<FilePiece> readPage(ByteView data, size_t* size) {
    if (!data.holds(kCapturePattern, 0)) {
        return std::nullopt;
    }
    const ByteView lacing = data.from(kLacingOffset).first(data[kNumSegmentsOffset]);
    *size = kLacingOffset + data[kNumSegmentsOffset];
    for (size_t i = 0; i < lacing.size(); ++i) {
        *size += lacing[i];
    }
    if (*size > data.size()) {
        return std::nullopt;
    }
    FilePiece page;
    page.isPage = true;
    page.version = data[kVersionOffset];
    page.flags = data[kFlagsOffset];
    page.granule = data.u64le(kGranulePositionOffset);
    page.serialNo = data.u32le(kSerialNoOffset);
    page.sequence = data.u32le(kPageNoOffset);
    page.checksum = data.u32le(kChecksumOffset);
    splitBody(lacing, data.from(kLacingOffset + lacing.size()), &page);
    return page;
}

void addJunk(PagedFile* pieces, ByteView junk) {
    if (!junk.empty()) {
        FilePiece piece;
        piece.junk = bytesOf(junk);
        pieces->push_back(std::move(piece));
    }
}

Bytes pageBytes(const FilePiece& piece) {
    test::OggPage page(piece.serialNo);
    page.version(piece.version)
            .flags(piece.flags)
            .granule(piece.granule)
            .sequence(piece.sequence)
            .checksum(piece.checksum);
    size_t segments = 0;
    for (size_t i = 0; i < piece.packets.size(); ++i) {
        const Bytes& packet = piece.packets[i];
        const bool open = piece.isOpen && i + 1 == piece.packets.size() && !packet.empty() &&
                          packet.size() % kFullSegment == 0;
        segments += packet.size() / kFullSegment + (open ? 0 : 1);
        if (segments > kMaxSegments) {
            break;
        }
        open ? page.openPacket(packet) : page.packet(packet);
    }
    return page.bytes();
}

}  // namespace

PagedFile splitIntoPages(const Bytes& file) {
    const ByteView data(file.data(), file.size());
    PagedFile pieces;
    size_t junkBegin = 0;
    size_t position = 0;
    while (position < data.size()) {
        size_t size = 0;
        if (auto page = readPage(data.from(position), &size)) {
            addJunk(&pieces, data.from(junkBegin).first(position - junkBegin));
            pieces.push_back(std::move(*page));
            position += size;
            junkBegin = position;
        } else {
            ++position;
        }
    }
    addJunk(&pieces, data.from(junkBegin));
    return pieces;
}

Bytes joinPages(const PagedFile& pieces) {
    Bytes file;
    for (const FilePiece& piece : pieces) {
        const Bytes bytes = piece.isPage ? pageBytes(piece) : piece.junk;
        file.insert(file.end(), bytes.begin(), bytes.end());
    }
    return file;
}

}  // namespace android::ogm::fuzz
