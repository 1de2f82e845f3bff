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
 * The streams of a file that became tracks, in the order of their headers, with their formats. It
 * is filled while a file is opened and keeps its streams from then on; formats may be asked for
 * from any thread.
 */
class StreamTable {
  public:
    /**
     * Adds the stream that `buffer`, its first packet, announces. Returns AMEDIA_OK, also for a
     * Vorbis header, of which no track is made, and AMEDIA_ERROR_UNSUPPORTED for everything else.
     */
    media_status_t parseOgmHeader(const MediaBuffer& buffer, uint32_t serialNo);

    size_t size() const { return mTracks.size(); }
    /** There must be such an entry. */
    const OgmStreamInfo& operator[](size_t index) const { return mTracks[index]; }
    std::vector<OgmStreamInfo>::const_iterator begin() const { return mTracks.begin(); }
    std::vector<OgmStreamInfo>::const_iterator end() const { return mTracks.end(); }

    /** The stream's record, the first one where two have the serial number; null for none. */
    const OgmStreamInfo* find(uint32_t serialNo) const;

    /** Of the header accepted last; every PCM track is made with it. */
    uint16_t bitsPerSample() const { return mBitsPerSample; }

    /** Puts the duration into all formats. */
    void setDuration(int64_t durationUs);

    /** A stream's MIME type; empty when it is not known. */
    std::string mimeOf(uint32_t serialNo) const;

    /**
     * Copies a stream's format with the duration into `format`; AMEDIA_ERROR_MALFORMED for a serial
     * number without a record.
     */
    media_status_t copyFormat(uint32_t serialNo, int64_t durationUs, AMediaFormat* format) const;

    /**
     * Copies the format of the entry at `index`; AMEDIA_ERROR_UNKNOWN when there is none. With
     * kIncludeExtensiveMetaData among `flags` the first call adds the thumbnail time.
     */
    media_status_t getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags);

  private:
    media_status_t addVideoStream(ByteView packet, uint32_t serialNo);
    media_status_t addAudioStream(ByteView packet, uint32_t serialNo);

    std::vector<OgmStreamInfo> mTracks;
    uint16_t mBitsPerSample = 0;
    bool mThumbnailTimeSet = false;
    /**
     * Held while a format is changed or copied, and never while anything is read. While a file is
     * being opened nobody else can ask for a format, and it is not needed.
     */
    mutable std::mutex mFormatLock;
};

}  // namespace android::ogm
