// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

/** A track that records its calls and returns what the test has set. */
class FakeTrack : public android::MediaTrackHelper {
  public:
    /** What outlives the track. */
    struct Record {
        bool deleted = false;
        bool groupWasSetAtDeletion = false;
        int stops = 0;
    };

    explicit FakeTrack(Record* record) : mRecord(record) {}
    ~FakeTrack() override {
        mRecord->deleted = true;
        mRecord->groupWasSetAtDeletion = mBufferGroup != nullptr;
    }

    media_status_t start() override {
        groupAtStart = mBufferGroup;
        return startResult;
    }
    media_status_t stop() override {
        ++mRecord->stops;
        return stopResult;
    }
    media_status_t getFormat(AMediaFormat* format) override {
        formatAsked = format;
        return formatResult;
    }
    media_status_t read(android::MediaBufferHelper** buffer, const ReadOptions* options) override {
        slotAtRead = *buffer;
        optionsWereNull = options == nullptr;
        didSeek = options->getSeekTo(&seekTimeUs, &seekMode);
        wasNonBlocking = options->getNonBlocking();
        if (acquires) {
            mBufferGroup->acquire_buffer(buffer);
        }
        return readResult;
    }

    android::MediaBufferGroupHelper* group() const { return mBufferGroup; }

    media_status_t startResult = AMEDIA_OK;
    media_status_t stopResult = AMEDIA_OK;
    media_status_t formatResult = AMEDIA_OK;
    media_status_t readResult = AMEDIA_OK;
    bool acquires = true;

    android::MediaBufferGroupHelper* groupAtStart = nullptr;
    AMediaFormat* formatAsked = nullptr;
    android::MediaBufferHelper* slotAtRead = nullptr;
    bool optionsWereNull = true;
    bool didSeek = false;
    int64_t seekTimeUs = 0;
    ReadOptions::SeekMode seekMode = ReadOptions::SEEK_PREVIOUS_SYNC;
    bool wasNonBlocking = false;

  private:
    Record* const mRecord;
};
