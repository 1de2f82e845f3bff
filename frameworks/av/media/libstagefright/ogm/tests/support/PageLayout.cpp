// SPDX-License-Identifier: Apache-2.0
#include "PageLayout.h"

namespace android::ogm::test {
namespace {

constexpr size_t kFullSegment = 255;
constexpr size_t kPacketsOnAFullPage = 7;
// Small enough that most packets take two or three pages.
constexpr size_t kSegmentsOfASmallPage = 3;

struct Segment {
    bool beginsPacket;
    Bytes bytes;
};

std::vector<Segment> segmentsOf(const Bytes& packet) {
    std::vector<Segment> segments;
    for (size_t start = 0; start <= packet.size(); start += kFullSegment) {
        segments.push_back({start == 0, head(tail(packet, start), kFullSegment)});
    }
    return segments;
}

std::vector<std::vector<Segment>> packetsPerPage(const std::vector<Bytes>& packets, size_t count) {
    std::vector<std::vector<Segment>> pages;
    for (size_t i = 0; i < packets.size(); ++i) {
        if (i % count == 0) {
            pages.emplace_back();
        }
        const auto segments = segmentsOf(packets[i]);
        pages.back().insert(pages.back().end(), segments.begin(), segments.end());
    }
    return pages;
}

std::vector<std::vector<Segment>> segmentsPerPage(const std::vector<Bytes>& packets, size_t count) {
    std::vector<std::vector<Segment>> pages;
    for (const Bytes& packet : packets) {
        for (const Segment& segment : segmentsOf(packet)) {
            if (pages.empty() || pages.back().size() == count) {
                pages.emplace_back();
            }
            pages.back().push_back(segment);
        }
    }
    return pages;
}

std::vector<std::vector<Segment>> pagesOf(const std::vector<Bytes>& packets, PageLayout layout) {
    switch (layout) {
        case PageLayout::kOnePacketAPage:
            return packetsPerPage(packets, 1);
        case PageLayout::kManyPacketsAPage:
            return packetsPerPage(packets, kPacketsOnAFullPage);
        default:
            return segmentsPerPage(packets, kSegmentsOfASmallPage);
    }
}

void addPieces(std::vector<PacketPiece>& pieces, const std::vector<Segment>& page) {
    for (size_t i = 0; i < page.size(); ++i) {
        if (i == 0 || page[i].beginsPacket) {
            pieces.push_back({page[i].beginsPacket, {}});
        }
        append(pieces.back().bytes, page[i].bytes);
    }
}

}  // namespace

std::vector<PacketPiece> addPackets(OgmFile& file, uint32_t serialNo,
                                    const std::vector<Bytes>& packets, PageLayout layout) {
    std::vector<PacketPiece> pieces;
    uint64_t granule = 0;
    for (const auto& segments : pagesOf(packets, layout)) {
        OggPage page(serialNo);
        granule += kGranulePerPage;
        page.granule(granule);
        if (!segments.front().beginsPacket) {
            page.continued();
        }
        for (const Segment& segment : segments) {
            page.lacing(static_cast<uint8_t>(segment.bytes.size())).body(segment.bytes);
        }
        file.add(page);
        addPieces(pieces, segments);
    }
    file.addData(serialNo, granule + kGranulePerPage, audioPacket(filled(1, 0x55)));
    return pieces;
}

}  // namespace android::ogm::test
