// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/MediaBuffer.h>

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "base/ByteView.h"
#include "stream/OgmStreamInfo.h"

namespace android::ogm {

/**
 * The streams of a file that became tracks, in the order of their headers, with their formats.
 * Streams are only added while a file is opened. Formats may be requested from any thread.
 */
class StreamTable {
  public:
    /**
     * Adds the stream whose first packet is in `buffer`. Returns AMEDIA_OK, also for a Vorbis
     * header, for which no track is made, and AMEDIA_ERROR_UNSUPPORTED for everything else.
     */
    media_status_t parseOgmHeader(const MediaBuffer& buffer, uint32_t serialNo);

    size_t size() const { return mTracks.size(); }
    /** The entry must exist. */
    const OgmStreamInfo& operator[](size_t index) const { return mTracks[index]; }
    std::vector<OgmStreamInfo>::const_iterator begin() const { return mTracks.begin(); }
    std::vector<OgmStreamInfo>::const_iterator end() const { return mTracks.end(); }

    /** The first stream with the serial number; null if there is none. */
    const OgmStreamInfo* find(uint32_t serialNo) const;

    /** From the last accepted header; used for all PCM tracks. */
    uint16_t bitsPerSample() const { return mBitsPerSample; }

    /** Puts the duration into all formats. */
    void setDuration(int64_t durationUs);

    /** A stream's MIME type; empty if unknown. */
    std::string mimeOf(uint32_t serialNo) const;

    /**
     * Copies a stream's format and the duration into `format`; AMEDIA_ERROR_MALFORMED if no stream
     * has the serial number.
     */
    media_status_t copyFormat(uint32_t serialNo, int64_t durationUs, AMediaFormat* format) const;

    /**
     * Copies the format of the entry at `index`; AMEDIA_ERROR_UNKNOWN if there is none. The first
     * call with kIncludeExtensiveMetaData in `flags` adds the thumbnail time.
     */
    media_status_t getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags);

  private:
    media_status_t addVideoStream(ByteView packet, uint32_t serialNo);
    media_status_t addAudioStream(ByteView packet, uint32_t serialNo);

    std::vector<OgmStreamInfo> mTracks;
    uint16_t mBitsPerSample = 0;
    bool mThumbnailTimeSet = false;
    /**
     * Held while a format is changed or copied, but never while the file is read. Not needed while
     * a file is being opened, because nobody else can request a format then.
     */
    mutable std::mutex mFormatLock;
};

}  // namespace android::ogm
