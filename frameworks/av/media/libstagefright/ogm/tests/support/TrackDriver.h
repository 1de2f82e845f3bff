// SPDX-License-Identifier: Apache-2.0
#pragma once

#ifndef LOG_TAG
#define LOG_TAG "OgmTest"
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "AccessUnit.h"
#include "Bytes.h"
#include "EventLog.h"
#include "MemorySource.h"
#include "OgmExtractor.h"

namespace android::ogm::test {

/** The view that the plug-in's functions take; the bytes must outlive it. */
inline ByteView viewOf(const Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}

/** An extractor over an in-memory source, without the plug-in's entry point. */
class ExtractorOverBytes {
  public:
    explicit ExtractorOverBytes(const Bytes& file);

    OgmExtractor& operator*() { return mExtractor; }
    OgmExtractor* operator->() { return &mExtractor; }

  private:
    MemorySource mSource;
    OgmExtractor mExtractor;
};

/** Cuts access units out of bytes that are appended to a track of a file without any pages. */
class TrackDriver {
  public:
    explicit TrackDriver(uint32_t streamType);

    OgmTrack* operator->() { return &mTrack; }

    /** Appends from a heap block of exactly that size. */
    media_status_t append(const Bytes& bytes, int64_t timeUs);
    /** The next access unit, or nothing. */
    std::optional<AccessUnit> next();
    /** Access units until there is none, at most `limit`. */
    std::vector<AccessUnit> cut(size_t limit = 100000);
    /** Appends and cuts. */
    std::vector<AccessUnit> feed(const Bytes& piece, int64_t timeUs);

    /** The bytes that have been appended and not taken yet. */
    Bytes buffered();
    /** The ranges in which they came: time and length. */
    std::vector<std::pair<int64_t, uint64_t>> ranges();
    /** Puts bytes into the empty buffer as they are, where appending would align them. */
    void place(const Bytes& bytes, int64_t timeUs);
    /** The format that the first MPEG audio frame filled; null before. */
    AMediaFormat* format();
    /** Learns the format from a frame header. */
    void learnFormat(uint32_t header, int32_t sampleRate, int32_t channels);

  private:
    ExtractorOverBytes mExtractor{{}};
    OgmTrack mTrack;
};

using Ranges = std::vector<std::pair<int64_t, uint64_t>>;

/** Records what is logged. */
class TrackTest : public ::testing::Test {
  protected:
    /** A track whose making has left no line in the log. */
    std::unique_ptr<TrackDriver> trackOf(uint32_t streamType) {
        auto track = std::make_unique<TrackDriver>(streamType);
        mEvents.clear();
        return track;
    }

    EventLog mEvents;
    LogCapture mCapture{mEvents};
};

}  // namespace android::ogm::test
