// SPDX-License-Identifier: Apache-2.0
#include "OgmFile.h"

#include <algorithm>

namespace android::ogm::test {

size_t OgmFile::add(const OggPage& page) {
    return add(page.bytes());
}

size_t OgmFile::add(const Bytes& bytes) {
    const size_t offset = mBytes.size();
    append(mBytes, bytes);
    return offset;
}

size_t OgmFile::addJunk(size_t count) {
    return add(filled(count, 'x'));
}

size_t OgmFile::addHeader(uint32_t serialNo, const Bytes& header) {
    return add(OggPage(serialNo).beginOfStream().packet(header));
}

size_t OgmFile::addHeader(uint32_t serialNo, const VideoHeader& header) {
    return addHeader(serialNo, header.bytes());
}

size_t OgmFile::addHeader(uint32_t serialNo, const AudioHeader& header) {
    return addHeader(serialNo, header.bytes());
}

size_t OgmFile::addComment(uint32_t serialNo) {
    return add(OggPage(serialNo).sequence(1).packet(commentHeader()));
}

size_t OgmFile::addData(uint32_t serialNo, uint64_t granule, const Bytes& packet) {
    return add(OggPage(serialNo).granule(granule).packet(packet));
}

void OgmFile::addPages(uint32_t serialNo, const std::vector<Bytes>& packets,
                       uint64_t firstGranule) {
    uint64_t granule = firstGranule;
    for (const Bytes& packet : packets) {
        addData(serialNo, granule++, packet);
    }
}

Bytes dataPacket(uint8_t headerByte, const Bytes& payload) {
    return joined({{headerByte}, payload});
}

Bytes dataPacket(uint8_t headerByte, const Bytes& lengthBytes, const Bytes& payload) {
    return joined({{headerByte}, lengthBytes, payload});
}

size_t audioHeaderLength(uint8_t headerByte) {
    return (((headerByte << 1) & 6) | ((headerByte >> 6) & 1)) + 3;
}

Bytes audioPacket(const Bytes& payload, uint8_t headerByte) {
    return dataPacket(headerByte, filled(audioHeaderLength(headerByte) - 1, 0xEE), payload);
}

Bytes OneVideoOneAudio::framePayload(size_t index) const {
    return pattern(frameSize, static_cast<uint32_t>(index));
}

Bytes OneVideoOneAudio::packetPayload(size_t index) const {
    return pattern(packetSize, static_cast<uint32_t>(index + 100000));
}

OgmFile oneVideoOneAudioFile(const OneVideoOneAudio& content) {
    constexpr size_t kSyncInterval = 10;
    OgmFile file;
    file.addHeader(content.videoSerialNo, content.video);
    file.addHeader(content.audioSerialNo, content.audio);
    if (content.comments) {
        file.addComment(content.videoSerialNo);
        file.addComment(content.audioSerialNo);
    }
    for (size_t i = 0; i < std::max(content.videoFrames, content.audioPackets); ++i) {
        if (i < content.videoFrames) {
            const uint8_t header = i % kSyncInterval == 0 ? kSyncPacket : kPlainPacket;
            file.addData(content.videoSerialNo, i + 1, dataPacket(header, content.framePayload(i)));
        }
        if (i < content.audioPackets) {
            file.addData(content.audioSerialNo, (i + 1) * content.samplesPerPacket,
                         audioPacket(content.packetPayload(i)));
        }
    }
    return file;
}

OgmFile videoAndMp3File(const Bytes& stream, size_t packetSize) {
    constexpr uint32_t kVideo = 1;
    constexpr uint32_t kAudio = 2;
    constexpr uint64_t kSamplesPerPacket = 2800;
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    AudioHeader mp3;
    mp3.subtype = "0055";
    mp3.samplesPerUnit = 44100;
    file.addHeader(kAudio, mp3);
    uint64_t page = 0;
    for (size_t start = 0; start < stream.size(); start += packetSize) {
        ++page;
        file.addData(kVideo, page, dataPacket(kSyncPacket, filled(100, 1)));
        file.addData(kAudio, page * kSamplesPerPacket,
                     audioPacket(head(tail(stream, start), packetSize)));
    }
    return file;
}

}  // namespace android::ogm::test
