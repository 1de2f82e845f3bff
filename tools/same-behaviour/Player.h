// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <array>
#include <memory>
#include <vector>

#include "BufferGroup.h"
#include "Plan.h"
#include "Source.h"

namespace android::ogm::trace {

/** A track as in the framework. Each call and its result is recorded. */
class PlayedTrack {
  public:
    PlayedTrack(CMediaTrack* track, std::string name, const GroupFault& groupFault);
    PlayedTrack(const PlayedTrack&) = delete;
    PlayedTrack& operator=(const PlayedTrack&) = delete;

    void start();
    void stop();
    void getFormat(bool isNull);
    void askNonBlocking();
    /** Returns the buffer; null if there is none. */
    Buffer* read(uint32_t options, int64_t timeUs);
    void keep(Buffer* buffer) { mKept.push_back(buffer); }
    void releaseKept();
    void free();

    bool isStarted() const { return mStarted; }
    size_t keptCount() const { return mKept.size(); }

  private:
    CMediaTrack* const mTrack;
    const std::string mName;
    BufferGroup mGroup;
    std::vector<Buffer*> mKept;
    bool mStarted = false;
};

/** Acts as the framework in a session and records it. */
class Player {
  public:
    Player(GetExtractorDef entry, const Plan& plan);

    /** Performs all steps, then frees what is open. */
    void play();

  private:
    static constexpr size_t kSlots = kAnySlot;

    void perform(const Step& step);
    void performOnFile(const Step& step);
    /** Returns the slot that a step refers to; an empty one if no slot holds a track. */
    size_t slotOf(const Step& step) const;
    void performOnTrack(const Step& step, PlayedTrack* track);

    void recordDefinition() const;
    CreatorFunc sniff(CDataSource* source) const;
    CreatorFunc creator() const;
    void open();
    void fileFormat();
    void trackFormat(size_t index, uint32_t flags, bool isNull);
    void getTrack(size_t index);
    void freeSlot(size_t slot);
    void freeExtractor();
    void close();
    void readRun(PlayedTrack* track, const Step& step);
    void playerSeek(const Step& step);
    void drain(size_t rounds);
    int64_t timeOf(const Step& step) const;

    const ExtractorDef mDefinition;
    const Plan& mPlan;
    Source mSource;
    CMediaExtractor* mExtractor = nullptr;
    int64_t mDurationUs = 0;
    size_t mTracksMade = 0;
    size_t mNextSlot = 0;
    std::array<PlayedTrack*, kSlots> mSlots{};
    /** Includes freed tracks: their groups and buffers keep their addresses. */
    std::vector<std::unique_ptr<PlayedTrack>> mTracks;
};

}  // namespace android::ogm::trace
