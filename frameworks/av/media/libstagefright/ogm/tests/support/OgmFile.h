// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Bytes.h"
#include "OggPage.h"
#include "OgmStreamHeaders.h"

namespace android::ogm::test {

inline constexpr uint8_t kSyncPacket = 0x08;
inline constexpr uint8_t kPlainPacket = 0x00;

/** A file that grows page by page. Each call returns the offset of what it added. */
class OgmFile {
  public:
    size_t add(const OggPage& page);
    size_t add(const Bytes& bytes);
    /** Adds bytes without a capture pattern. */
    size_t addJunk(size_t count);
    /** A page that begins a logical stream with the given header packet. */
    size_t addHeader(uint32_t serialNo, const Bytes& header);
    size_t addHeader(uint32_t serialNo, const VideoHeader& header);
    size_t addHeader(uint32_t serialNo, const AudioHeader& header);
    /** The comment page that ordinary writers put after the header pages of a stream. */
    size_t addComment(uint32_t serialNo);
    /** A page with one packet. */
    size_t addData(uint32_t serialNo, uint64_t granule, const Bytes& packet);

    /** One page for each packet, with granule positions that count up from `firstGranule`. */
    void addPages(uint32_t serialNo, const std::vector<Bytes>& packets, uint64_t firstGranule = 1);

    const Bytes& bytes() const { return mBytes; }
    size_t size() const { return mBytes.size(); }

  private:
    Bytes mBytes;
};

/** A data packet: the header byte, then the payload. */
Bytes dataPacket(uint8_t headerByte, const Bytes& payload);
/** A data packet whose header byte announces a length, which follows in `lengthBytes`. */
Bytes dataPacket(uint8_t headerByte, const Bytes& lengthBytes, const Bytes& payload);

/** How many bytes the plug-in removes from the front of an audio packet with this header byte. */
size_t audioHeaderLength(uint8_t headerByte);
/** An audio packet of which exactly the payload remains after its header is removed. */
Bytes audioPacket(const Bytes& payload, uint8_t headerByte = kPlainPacket);

/** The size, content and timing of a file with one video and one audio stream. */
struct OneVideoOneAudio {
    VideoHeader video;
    AudioHeader audio;
    uint32_t videoSerialNo = 1;
    uint32_t audioSerialNo = 2;
    size_t videoFrames = 50;
    size_t audioPackets = 50;
    size_t frameSize = 100;
    size_t packetSize = 64;
    uint64_t samplesPerPacket = 320;
    bool comments = true;

    /** The bytes after the header of frame or packet number `index`. */
    Bytes framePayload(size_t index) const;
    Bytes packetPayload(size_t index) const;
};

/**
 * Header pages, comment pages, then alternating video and audio pages with one packet each.
 * The n-th video page has granule position n + 1, the n-th audio page (n + 1) x samplesPerPacket;
 * every tenth frame is a sync frame.
 */
OgmFile oneVideoOneAudioFile(const OneVideoOneAudio& content = {});

/**
 * Alternating pages of video and MP3. Each audio packet has `packetSize` bytes of `stream`,
 * wherever its frames begin and end.
 */
OgmFile videoAndMp3File(const Bytes& stream, size_t packetSize);

}  // namespace android::ogm::test
