// SPDX-License-Identifier: Apache-2.0
#include "TrackSlot.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "Ends.h"

namespace android::ogm::fuzz {

namespace {

/** The group has 64 buffers and would wait forever for one more. */
constexpr size_t kMaxKept = 4;

constexpr std::string_view kVideo = "video/";
constexpr std::string_view kRawAudio = "audio/raw";
constexpr std::string_view kMpegAudio = "audio/mpeg";

}  // namespace

bool TrackSlot::isVideo() const {
    return mMime.compare(0, kVideo.size(), kVideo) == 0;
}

/**
 * Whether the type may be that of another stream: if two streams have the same serial number, the
 * frames of an MPEG audio stream set the type of the first stream.
 */
bool TrackSlot::isMpegAudio() const {
    return mMime.compare(0, kMpegAudio.size(), kMpegAudio) == 0;
}

TrackSlot::TrackSlot(CMediaTrack* track, std::string mime)
    : mGroup(std::make_unique<MediaBufferGroup>()), mTrack(track), mMime(std::move(mime)) {}

TrackSlot::~TrackSlot() {
    mTrack->free(mTrack->data);
    ::free(mTrack);
    releaseKept();
}

void TrackSlot::start() {
    require(mTrack->start(mTrack->data, mGroup->wrap()) == AMEDIA_OK, "a track cannot be started");
    mStarted = true;
}

void TrackSlot::stop() {
    require(mTrack->stop(mTrack->data) == AMEDIA_OK, "a track cannot be stopped");
}

void TrackSlot::checkFormat() {
    const FormatPtr format(AMediaFormat_new());
    require(mTrack->getFormat(mTrack->data, format.get()) == AMEDIA_OK, "a track has no format");
    const char* mime = nullptr;
    require(AMediaFormat_getString(format.get(), AMEDIAFORMAT_KEY_MIME, &mime),
            "the format of a track has no MIME type");
    require(!mTrack->supportsNonBlockingRead(mTrack->data), "reads do block");
}

ReadOutcome TrackSlot::read(uint32_t options, int64_t seekUs) {
    ReadOutcome outcome;
    outcome.status = mTrack->read(mTrack->data, &outcome.buffer, options, seekUs);
    switch (outcome.status) {
        case AMEDIA_OK:
            require(outcome.buffer != nullptr, "a read without buffer is not OK");
            outcome.payloadSize = checkBuffer(outcome.buffer, &outcome.timeUs);
            break;
        case AMEDIA_ERROR_END_OF_STREAM:
        case AMEDIA_ERROR_IO:
            require(outcome.buffer == nullptr, "a read that fails gives no buffer");
            break;
        default:
            finding("a read gives the status %d", outcome.status);
    }
    return outcome;
}

size_t TrackSlot::checkBuffer(CMediaBuffer* buffer, int64_t* timeUs) const {
    require(mStarted, "a track gives buffers before it was started");
    AMediaFormat* const meta = buffer->meta_data(buffer->handle);
    require(AMediaFormat_getInt64(meta, AMEDIAFORMAT_KEY_TIME_US, timeUs), "a buffer has no time");
    int32_t isSync = 0;
    const bool hasSync = AMediaFormat_getInt32(meta, AMEDIAFORMAT_KEY_IS_SYNC_FRAME, &isSync);
    require(hasSync == isVideo() || (hasSync && isMpegAudio()), "video alone has sync frames");
    require(isSync == 0 || isSync == 1, "a frame is a sync frame or not");
    const size_t size = buffer->range_length(buffer->handle);
    require(buffer->range_offset(buffer->handle) == 0, "the bytes begin at the start of a buffer");
    require(size <= buffer->size(buffer->handle), "a buffer holds its range");
    int64_t targetUs = 0;
    if (AMediaFormat_getInt64(meta, AMEDIAFORMAT_KEY_TARGET_TIME, &targetUs)) {
        require(targetUs == 0, "the target time is always 0");
        return size;
    }
    // A buffer of converted 8-bit samples has only its time.
    require(mMime == kRawAudio || isMpegAudio(), "a buffer has no target time");
    require(size % 2 == 0, "a widened buffer holds half a sample");
    return size / 2;
}

void TrackSlot::keep(CMediaBuffer* buffer) {
    if (mKept.size() < kMaxKept) {
        mKept.push_back(buffer);
    } else {
        release(buffer);
    }
}

void TrackSlot::releaseKept() {
    for (CMediaBuffer* const buffer : mKept) {
        release(buffer);
    }
    mKept.clear();
}

}  // namespace android::ogm::fuzz
