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

/** What one read gave. */
struct ReadOutcome {
    media_status_t status = AMEDIA_OK;
    /** Null for none; to be released. */
    CMediaBuffer* buffer = nullptr;
    int64_t timeUs = 0;
    /** Payload bytes that the file must hold for this buffer. */
    size_t payloadSize = 0;
};

/** A track as the framework holds it, with its buffer group. Checks each result. */
class TrackSlot {
  public:
    /** Takes the table over; `mime` is the type of the stream. */
    TrackSlot(CMediaTrack* track, std::string mime);
    ~TrackSlot();
    TrackSlot(const TrackSlot&) = delete;
    TrackSlot& operator=(const TrackSlot&) = delete;

    void start();
    void stop();
    void checkFormat();
    ReadOutcome read(uint32_t options, int64_t seekUs);

    /** Keeps a buffer in use; it is released at once when enough are kept. */
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
