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

/** Loads the plug-in once and returns its description. Throws if there is none. */
const ExtractorDef& plugin();

/** Acts as the framework for an opened file. Buffers are released at once. */
class Player {
  public:
    /** Sniffs the source and opens it; throws if the plug-in refuses it. */
    explicit Player(Source& source);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /** Makes and starts all tracks. */
    void startTracks();
    size_t trackCount() const { return mTracks.size(); }
    int64_t durationUs() const;

    /** Reads once. Returns false if there was no buffer. */
    bool read(size_t track, uint32_t options = 0, int64_t seekUs = 0);
    bool seekAndRead(size_t track, int64_t seekUs);

    /** Reads all tracks to their ends, always from the one with the lowest time. */
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
