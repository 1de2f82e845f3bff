// SPDX-License-Identifier: Apache-2.0
#include "ElementaryFile.h"

#include <iterator>

#include "OgmFile.h"

namespace android::ogm::fuzz {

namespace {

using test::OggPage;
using test::OgmFile;

constexpr const char* kVideoCodecs[] = {"FMP4", "mpg2", "H264", "MJPG"};
constexpr const char* kAudioCodecs[] = {"0055", "0050", "2000", "2001", "0001"};
constexpr size_t kCodecs = std::size(kVideoCodecs) + std::size(kAudioCodecs);

constexpr uint32_t kSerialNo = 1;
constexpr size_t kPacketStep = 8;
constexpr int kGranuleShift = 2;
/** The last page of a stream is never read, and the last packet before it stays open. */
constexpr size_t kClosingPages = 2;

/** Adds the header page; returns whether the stream is audio. */
bool addHeader(OgmFile* file, size_t codec) {
    if (codec < std::size(kVideoCodecs)) {
        test::VideoHeader header;
        header.subtype = kVideoCodecs[codec];
        file->addHeader(kSerialNo, header);
        return false;
    }
    test::AudioHeader header;
    header.subtype = kAudioCodecs[codec - std::size(kVideoCodecs)];
    file->addHeader(kSerialNo, header);
    return true;
}

}  // namespace

Bytes elementaryFile(const Bytes& input) {
    InputReader reader(input.data(), input.size());
    OgmFile file;
    const bool isAudio = addHeader(&file, reader.u8() % kCodecs);
    const size_t packetSize = kPacketStep * reader.u8() + 1;
    const uint8_t page = reader.u8();
    const size_t packetsOnAPage = (page & 3U) + 1;
    const uint64_t granuleStep = uint64_t{1} + (page >> kGranuleShift);
    const uint8_t firstByte = reader.u8();
    uint64_t granule = 0;
    const auto nextPage = [&] {
        granule += granuleStep;
        return OggPage(kSerialNo).granule(granule).checksum(0);
    };
    while (!reader.empty()) {
        OggPage next = nextPage();
        for (size_t i = 0; i < packetsOnAPage; ++i) {
            const Bytes payload = bytesOf(reader.bytes(packetSize));
            next.packet(isAudio ? test::audioPacket(payload, firstByte)
                                : test::dataPacket(firstByte, payload));
        }
        file.add(next);
    }
    for (size_t i = 0; i < kClosingPages; ++i) {
        file.add(nextPage().packet({firstByte}));
    }
    return file.bytes();
}

}  // namespace android::ogm::fuzz
