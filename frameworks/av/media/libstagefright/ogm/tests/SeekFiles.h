// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <vector>

#include "OgmFile.h"

/** Files in which a page's number determines its offset and time. */
namespace android::ogm::test {

/** Size of a page with only a stream header. */
inline constexpr size_t kHeaderPageSize = kPageHeaderSize + 1 + kStreamHeaderSize;

inline constexpr uint32_t kPacedSerialNo = 1;
inline constexpr size_t kPacedPageSize = 1024;
inline constexpr int64_t kPacedPageUs = 40000;
/** Samples of 8 kHz audio on a page. */
inline constexpr uint64_t kPacedSamples = 320;

/** The search for the duration begins this far from the end; shorter files have no duration. */
inline constexpr size_t kDurationTail = 650520;

/** Size of the only packet on a page of `pageSize` bytes. */
inline size_t packetSizeForPage(size_t pageSize) {
    for (size_t size = pageSize - kPageHeaderSize; size > 0; --size) {
        if (kPageHeaderSize + size / 255 + 1 + size == pageSize) {
            return size;
        }
    }
    throw std::invalid_argument("no packet makes a page of this size");
}

/** The bytes of an audio or video packet after its header, on a page of `pageSize` bytes. */
inline Bytes audioPayload(size_t index, size_t pageSize = kPacedPageSize) {
    return pattern(packetSizeForPage(pageSize) - 3, static_cast<uint32_t>(index));
}

inline Bytes videoPayload(size_t index, size_t pageSize = kPacedPageSize) {
    return pattern(packetSizeForPage(pageSize) - 1, static_cast<uint32_t>(index));
}

/** Offset of page `index` in a file with one stream and pages of the same size. */
inline int64_t pageOffset(size_t index, size_t pageSize = kPacedPageSize) {
    return static_cast<int64_t>(kHeaderPageSize + index * pageSize);
}

/**
 * A PCM stream of 8 kHz. Each page has 1024 bytes and one packet of 40 ms. Page n begins at n x 40
 * ms. A thousand pages are longer than the tail in which the duration is searched.
 */
inline OgmFile pacedAudioFile(size_t pages) {
    OgmFile file;
    file.addHeader(kPacedSerialNo, AudioHeader());
    for (size_t i = 0; i < pages; ++i) {
        file.addData(kPacedSerialNo, (i + 1) * kPacedSamples, audioPacket(audioPayload(i)));
    }
    return file;
}

/** The same for video; every `syncInterval`-th frame is a sync frame, 0 for none. */
inline OgmFile pacedVideoFile(size_t pages, size_t syncInterval) {
    OgmFile file;
    file.addHeader(kPacedSerialNo, VideoHeader());
    for (size_t i = 0; i < pages; ++i) {
        const bool sync = syncInterval != 0 && i % syncInterval == 0;
        file.addData(kPacedSerialNo, i + 1,
                     dataPacket(sync ? kSyncPacket : kPlainPacket, videoPayload(i)));
    }
    return file;
}

/** The header of a PCM stream in which a granule position is a time in microseconds. */
inline AudioHeader microsecondAudio() {
    AudioHeader header;
    header.samplesPerUnit = 1000000;
    return header;
}

/** The header of a video stream in which a granule position is a time in microseconds. */
inline VideoHeader microsecondVideo() {
    VideoHeader header;
    header.timeUnit = 10;
    return header;
}

}  // namespace android::ogm::test
