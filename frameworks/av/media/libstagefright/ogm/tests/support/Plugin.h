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

/** The plug-in as the framework sees it: reached through its one exported symbol. */
namespace android::ogm::test {

/** What one `read` gave; the buffer has been released. */
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

/** The times of buffers; -1 for one without. */
std::vector<int64_t> timesOf(const std::vector<ReadResult>& results);

class Track {
  public:
    Track(std::shared_ptr<CMediaExtractor> extractor, CMediaTrack* track);

    /** Starts the track on its one buffer group. */
    media_status_t start();
    /** Starts it on another one, which must outlive the track. */
    media_status_t start(CMediaBufferGroup* group);
    media_status_t stop();
    media_status_t getFormat(const Format& format);
    bool supportsNonBlockingRead();
    /** Lets the extractor go before this track. */
    void releaseExtractor() { mExtractor.reset(); }

    ReadResult read(uint32_t options = 0, int64_t seekUs = 0);
    /** Seeks with the mode "previous sync", then reads. */
    ReadResult readAt(int64_t seekUs);
    /** Reads until a read gives no buffer, at most `limit` times; the last result is not kept. */
    std::vector<ReadResult> readAll(size_t limit = 100000);

    /**
     * Reads until two reads in a row give no buffer. A track that meets the end of the file before
     * its queue has filled says so once before it gives out what it has.
     */
    std::vector<ReadResult> drain(size_t limit = 100000);

    /** A buffer that stays in use; give it back with `release`. Null when the read gave none. */
    CMediaBuffer* readAndKeep();
    static void release(CMediaBuffer* buffer);

  private:
    struct Free {
        void operator()(CMediaTrack* track) const;
    };
    // The order matters: the track goes first, then its buffers, then the extractor, unless it
    // was released.
    std::shared_ptr<CMediaExtractor> mExtractor;
    std::unique_ptr<MediaBufferGroup> mGroup;
    std::unique_ptr<CMediaTrack, Free> mTrack;
};

class Extractor {
  public:
    explicit Extractor(CMediaExtractor* extractor);

    size_t countTracks() const;
    /** Null for an index that the extractor refuses. */
    std::unique_ptr<Track> track(size_t index) const;
    /** The same, started. */
    std::unique_ptr<Track> startedTrack(size_t index) const;
    media_status_t getTrackMetaData(const Format& format, size_t index, uint32_t flags = 0) const;
    media_status_t getMetaData(const Format& format) const;
    /** The format of a track that exists, and of the file. */
    Format trackFormat(size_t index) const;
    Format fileFormat() const;
    uint32_t flags() const;
    media_status_t setMediaCas() const;
    const char* name() const;

  private:
    std::shared_ptr<CMediaExtractor> mExtractor;
};

/** What the sniff function gave and wrote. */
struct SniffResult {
    CreatorFunc creator = nullptr;
    float confidence = 0;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
};

/** The record that the entry point returns. */
ExtractorDef pluginDefinition();
/** Sniffs with the three outputs holding what `before` holds. */
SniffResult sniff(MemorySource& source, const SniffResult& before = {});
/** Creates an extractor without sniffing: the creator takes every source. */
Extractor openFile(MemorySource& source);

}  // namespace android::ogm::test
