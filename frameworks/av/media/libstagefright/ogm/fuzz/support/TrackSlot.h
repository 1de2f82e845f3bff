// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Format.h"

namespace android::ogm::fuzz {

/** The result of a read. */
struct ReadOutcome {
    media_status_t status = AMEDIA_OK;
    /** To be released; null if there is none. */
    CMediaBuffer* buffer = nullptr;
    int64_t timeUs = 0;
    /** Number of payload bytes that the file must have for this buffer. */
    size_t payloadSize = 0;
};

/** A track with its buffer group, as in the framework. Checks each result. */
class TrackSlot {
  public:
    /** Takes ownership of the table; `mime` is the type of the stream. */
    TrackSlot(CMediaTrack* track, std::string mime);
    ~TrackSlot();
    TrackSlot(const TrackSlot&) = delete;
    TrackSlot& operator=(const TrackSlot&) = delete;

    void start();
    void stop();
    void checkFormat();
    ReadOutcome read(uint32_t options, int64_t seekUs);

    /** Keeps a buffer in use; releases it at once if enough are kept already. */
    void keep(CMediaBuffer* buffer);
    void releaseKept();
    static void release(CMediaBuffer* buffer) { buffer->release(buffer->handle); }

    bool isStarted() const { return mStarted; }

  private:
    bool isVideo() const;
    bool isMpegAudio() const;
    size_t checkBuffer(CMediaBuffer* buffer, int64_t* timeUs) const;

    std::unique_ptr<MediaBufferGroup> mGroup;
    CMediaTrack* const mTrack;
    const std::string mMime;
    std::vector<CMediaBuffer*> mKept;
    bool mStarted = false;
};

}  // namespace android::ogm::fuzz
