// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <array>
#include <memory>

#include "MemoryWatch.h"
#include "ScriptedSource.h"
#include "SessionInput.h"
#include "TrackSlot.h"

namespace android::ogm::fuzz {

/**
 * Acts as the framework: makes the calls of an input in order and checks each result. Calls that
 * the framework cannot make (a track of a file that is not open, two extractors at once) are
 * skipped.
 */
class Session {
  public:
    Session(const SessionInput& input, const Bytes& file);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void run();

  private:
    static constexpr size_t kSlots = 8;

    void usual();
    void perform(const Call& call);
    void performOnTrack(const Call& call, TrackSlot& track);

    CreatorFunc sniff();
    void open();
    void close();
    void queryFile();
    void getTrackMetaData(size_t index, uint32_t flags);
    void getTrack(size_t index);
    void playerSeek(const Call& call);
    /** Reads all tracks alternately, at most `count` buffers each. */
    void drain(size_t count);
    /** Reads up to `count` buffers with the seek, if any, on the first. */
    void readRun(TrackSlot& track, size_t count, uint32_t options, int64_t seekUs);
    ReadOutcome read(TrackSlot& track, uint32_t options, int64_t seekUs);
    int64_t timeOf(const Call& call) const { return seekTimeUs(call.time, mDurationUs); }

    const CreatorFunc mCreator;
    const SessionInput& mInput;
    ScriptedSource mSource;
    MemoryWatch mMemory{mSource};
    CMediaExtractor* mExtractor = nullptr;
    int64_t mDurationUs = 0;
    std::array<std::unique_ptr<TrackSlot>, kSlots> mSlots;
    size_t mNextSlot = 0;
    uint64_t mPayloadOut = 0;
};

}  // namespace android::ogm::fuzz
