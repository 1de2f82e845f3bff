// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaError.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Bytes.h"
#include "Format.h"
#include "MemorySource.h"

/** The plug-in as the framework uses it: through its only exported symbol. */
namespace android::ogm::test {

/** The result of a `read`; the buffer has been released. */
struct ReadResult {
    media_status_t status = AMEDIA_OK;
    bool hasBuffer = false;
    std::optional<int64_t> timeUs;
    std::optional<int64_t> targetTimeUs;
    std::optional<int32_t> isSyncFrame;
    /** The bytes of the buffer's range. */
    Bytes bytes;
    size_t rangeOffset = 0;
    /** Size of the whole buffer, which may be larger than its range. */
    size_t capacity = 0;
};

/** The times of buffers; -1 if a buffer has none. */
std::vector<int64_t> timesOf(const std::vector<ReadResult>& results);

class Track {
  public:
    Track(std::shared_ptr<CMediaExtractor> extractor, CMediaTrack* track);

    /** Starts the track with its own buffer group. */
    media_status_t start();
    /** Starts it with another buffer group, which must outlive the track. */
    media_status_t start(CMediaBufferGroup* group);
    media_status_t stop();
    media_status_t getFormat(const Format& format);
    bool supportsNonBlockingRead();
    /** Releases the extractor before this track. */
    void releaseExtractor() { mExtractor.reset(); }

    ReadResult read(uint32_t options = 0, int64_t seekUs = 0);
    /** Seeks with the mode "previous sync", then reads. */
    ReadResult readAt(int64_t seekUs);
    /** Reads until a read returns no buffer, at most `limit` times. Omits that last result. */
    std::vector<ReadResult> readAll(size_t limit = 100000);

    /**
     * Reads until two consecutive reads return no buffer. A track that reaches the end of the file
     * before its queue is full reports that once before it returns its packets.
     */
    std::vector<ReadResult> drain(size_t limit = 100000);

    /** A buffer that stays in use until `release`. Null if the read returned none. */
    CMediaBuffer* readAndKeep();
    static void release(CMediaBuffer* buffer);

  private:
    struct Free {
        void operator()(CMediaTrack* track) const;
    };
    // The order matters: first the track is freed, then its buffers, then the extractor, unless it
    // was released.
    std::shared_ptr<CMediaExtractor> mExtractor;
    std::unique_ptr<MediaBufferGroup> mGroup;
    std::unique_ptr<CMediaTrack, Free> mTrack;
};

class Extractor {
  public:
    explicit Extractor(CMediaExtractor* extractor);

    size_t countTracks() const;
    /** Null if the extractor refuses the index. */
    std::unique_ptr<Track> track(size_t index) const;
    /** The same, started. */
    std::unique_ptr<Track> startedTrack(size_t index) const;
    media_status_t getTrackMetaData(const Format& format, size_t index, uint32_t flags = 0) const;
    media_status_t getMetaData(const Format& format) const;
    /** The format of a track, which must exist, and of the file. */
    Format trackFormat(size_t index) const;
    Format fileFormat() const;
    uint32_t flags() const;
    media_status_t setMediaCas() const;
    const char* name() const;

  private:
    std::shared_ptr<CMediaExtractor> mExtractor;
};

/** What the sniff function returned and wrote. */
struct SniffResult {
    CreatorFunc creator = nullptr;
    float confidence = 0;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
};

/** The record that the entry point returns. */
ExtractorDef pluginDefinition();
/** Sniffs; the three outputs have the values of `before` first. */
SniffResult sniff(MemorySource& source, const SniffResult& before = {});
/** Creates an extractor without sniffing, because the creator takes every source. */
Extractor openFile(MemorySource& source);

}  // namespace android::ogm::test
