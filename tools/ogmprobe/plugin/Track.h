// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "plugin/Format.h"
#include "records/Packet.h"

namespace ogmprobe {

/** The name of a `media_status_t` with its number, as "AMEDIA_ERROR_IO (-10007)". */
std::string statusText(media_status_t status);

/** A seek as part of a read. */
struct SeekRequest {
    int64_t timeUs;
    android::CMediaTrackReadOptions mode;
};

/**
 * A track of an extractor, used like in the framework: started with one buffer group for its whole
 * lifetime, stopped (if started) and freed at the end.
 *
 * Must be destroyed before its extractor.
 */
class Track {
  public:
    struct ReadResult {
        media_status_t status;
        /** Nothing with any status except `AMEDIA_OK`, and possibly even with that one. */
        std::optional<Packet> packet;
        /** The buffer had no time, which the standard clients do not accept. */
        bool withoutTime = false;
    };

    /** Takes ownership of the table. */
    Track(size_t index, android::CMediaTrack* table);
    ~Track();

    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    size_t index() const { return mIndex; }

    media_status_t start();
    /** Packets include the format entries of their buffers from now on. */
    void keepEntries() { mKeepsEntries = true; }
    /** Returns the format that `getFormat` fills; empty if it fails. */
    Format format() const;
    /** Copies the buffer's range and releases the buffer at once. */
    ReadResult read(const std::optional<SeekRequest>& seek);

  private:
    struct Free {
        void operator()(android::CMediaTrack* table) const;
        size_t index;
    };

    const size_t mIndex;
    bool mStarted = false;
    bool mKeepsEntries = false;
    // Destroyed after the table: the plug-in may hold buffers until its track is freed.
    std::unique_ptr<android::MediaBufferGroup> mGroup;
    std::unique_ptr<android::CMediaTrack, Free> mTable;
};

}  // namespace ogmprobe
