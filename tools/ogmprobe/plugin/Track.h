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

/** A seek that goes with a read. */
struct SeekRequest {
    int64_t timeUs;
    android::CMediaTrackReadOptions mode;
};

/**
 * One track of an extractor, driven as the framework drives it: started with one buffer group for
 * life, stopped (if started) and freed at the end.
 *
 * Must be gone before its extractor.
 */
class Track {
  public:
    struct ReadResult {
        media_status_t status;
        /** Nothing on any status but `AMEDIA_OK`, and possibly even then. */
        std::optional<Packet> packet;
        /** The buffer bore no time, which the standard clients do not accept. */
        bool withoutTime = false;
    };

    /** Takes the table over. */
    Track(size_t index, android::CMediaTrack* table);
    ~Track();

    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    size_t index() const { return mIndex; }

    media_status_t start();
    /** From now on packets have the entries that their buffers carry. */
    void keepEntries() { mKeepsEntries = true; }
    /** What `getFormat` fills in; empty if it fails. */
    Format format() const;
    /** Copies the buffer's range and gives the buffer back at once. */
    ReadResult read(const std::optional<SeekRequest>& seek);

  private:
    struct Free {
        void operator()(android::CMediaTrack* table) const;
        size_t index;
    };

    const size_t mIndex;
    bool mStarted = false;
    bool mKeepsEntries = false;
    // Goes after the table: the plug-in may hold buffers until its track is freed.
    std::unique_ptr<android::MediaBufferGroup> mGroup;
    std::unique_ptr<android::CMediaTrack, Free> mTable;
};

}  // namespace ogmprobe
