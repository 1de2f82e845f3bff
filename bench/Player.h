// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Source.h"

namespace android::ogm::bench {

/** Loads the plug-in; the same one each time. Throws when there is none. */
const ExtractorDef& plugin();

/** The framework's part for one opened file: buffers are released as soon as they were looked at.
 */
class Player {
  public:
    /** Sniffs the source and opens it; throws when the plug-in refuses it. */
    explicit Player(Source& source);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /** Makes and starts all tracks. */
    void startTracks();
    size_t trackCount() const { return mTracks.size(); }
    int64_t durationUs() const;

    /** One read. False when no buffer came. */
    bool read(size_t track, uint32_t options = 0, int64_t seekUs = 0);
    bool seekAndRead(size_t track, int64_t seekUs);

    /** Reads always from the track that has come least far, until all have ended. */
    void readInTimeOrder();
    void readTrackToEnd(size_t track);

    uint64_t buffers() const { return mBuffers; }
    uint64_t payloadBytes() const { return mPayloadBytes; }

  private:
    struct Track {
        CMediaTrack* table;
        std::unique_ptr<MediaBufferGroup> group;
        int64_t timeUs = 0;
        bool ended = false;
    };

    CMediaExtractor* mExtractor;
    std::vector<Track> mTracks;
    uint64_t mBuffers = 0;
    uint64_t mPayloadBytes = 0;
};

}  // namespace android::ogm::bench
