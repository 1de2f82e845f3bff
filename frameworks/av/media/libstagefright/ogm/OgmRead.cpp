// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <cstdio>

#include "OgmExtractor.h"
#include "audio/Pcm.h"
#include "packet/ReadDecision.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::ByteView;
using ogm::FormatPtr;

namespace {

/** Packets that are queued before one is given out, so that reordered frames get their times. */
constexpr size_t kQueueTarget = 10;
/** The last packet is still being assembled. */
constexpr size_t kIncompletePackets = 1;

/** Every buffer names the start of the file as the time that was asked for, after a seek too. */
constexpr int64_t kTargetTimeUs = 0;

constexpr const char* kDumpFile = "/data/bs_dump_OGM_AUDIO.bin";

constexpr uint16_t kBits24 = 24;
constexpr uint16_t kBits8 = 8;

struct FileCloser {
    void operator()(FILE* file) const { (void)fclose(file); }
};

int64_t timeOf(MediaBufferHelper* buffer) {
    int64_t timeUs = 0;
    (void)AMediaFormat_getInt64(buffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US, &timeUs);
    return timeUs;
}

int32_t syncFlagOf(MediaBufferHelper* buffer) {
    int32_t isSyncFrame = 0;
    (void)AMediaFormat_getInt32(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME, &isSyncFrame);
    return isSyncFrame;
}

}  // namespace

media_status_t OgmTrack::read(MediaBufferHelper** buffer, const ReadOptions* options) {
    const std::lock_guard<std::mutex> lock(mExtractor->lock());

    // As if the format were asked for again each time; only its MIME type is used, in the log.
    logGetFormat();
    if (!mMime.empty()) {
        ALOGI("begin read mime:%s", mimeText());
    }
    int64_t seekTimeUs = 0;
    ReadOptions::SeekMode mode{};
    if (options != nullptr && options->getSeekTo(&seekTimeUs, &mode)) {
        if (const media_status_t status = seek(seekTimeUs); status != AMEDIA_OK) {
            return status;
        }
    }
    media_status_t status = takePacket(buffer);
    if (status == AMEDIA_OK) {
        status = reworkPcm(buffer);
    }
    if (status != AMEDIA_OK) {
        return status;
    }
    ALOGI("after read mime:%s IsIFrame:%d, timeUs:%lld, size:%d", mimeText(), syncFlagOf(*buffer),
          static_cast<long long>(timeOf(*buffer)), static_cast<int>((*buffer)->range_length()));
    if (mDumpAudio && ogm::isAudioType(mType)) {
        dumpAudio(*buffer);
    }
    return AMEDIA_OK;
}

void OgmTrack::logGetFormat() const {
    ALOGI("getFormat: Track type[%d]", static_cast<int>(mType));
}

media_status_t OgmTrack::fillQueue() {
    media_status_t result = AMEDIA_OK;
    while (mPacketsQue.size() < kQueueTarget && result == AMEDIA_OK) {
        result = mExtractor->readNextPacket();
    }
    return result;
}

media_status_t OgmTrack::takePacket(MediaBufferHelper** buffer) {
    const bool hadCompletePackets = mPacketsQue.size() > kIncompletePackets;
    const media_status_t result = fillQueue();
    switch (ogm::decideAfterFilling(result, hadCompletePackets, mPacketsQue.size())) {
        case ogm::ReadStep::kEndOfStream:
            return AMEDIA_ERROR_END_OF_STREAM;
        case ogm::ReadStep::kIoError:
            return AMEDIA_ERROR_IO;
        case ogm::ReadStep::kEndOfData:
            break;
        case ogm::ReadStep::kDequeue:
            *buffer = dequeueFrame(kTargetTimeUs);
            break;
    }
    if (*buffer == nullptr) {
        ALOGE("return EOS !");
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    (*buffer)->set_range(0, (*buffer)->range_length());
    return AMEDIA_OK;
}

media_status_t OgmTrack::reworkPcm(MediaBufferHelper** buffer) {
    if (mType != OGA_AUDIO_PCM) {
        return AMEDIA_OK;
    }
    if (mBitsPerSample == kBits8) {
        ALOGI("OGA_AUDIO_PCM,mBitsPerSample == 8");
        return widenPcm(buffer);
    }
    if (mBitsPerSample == kBits24) {
        MediaBufferHelper* const pcm = *buffer;
        const size_t size = ogm::narrowPcm24(
                static_cast<uint8_t*>(pcm->data()) + pcm->range_offset(), pcm->range_length());
        pcm->set_range(pcm->range_offset(), size);
    }
    return AMEDIA_OK;
}

media_status_t OgmTrack::widenPcm(MediaBufferHelper** buffer) {
    MediaBufferHelper* const narrow = *buffer;
    const ByteView samples(static_cast<const uint8_t*>(narrow->data()), narrow->range_length());
    const size_t size = 2 * samples.size();
    MediaBufferHelper* const wide = acquireBuffer(size);
    if (wide == nullptr) {
        narrow->release();
        return AMEDIA_ERROR_UNKNOWN;
    }
    wide->set_range(0, size);
    ogm::widenPcm8(samples, static_cast<uint8_t*>(wide->data()));
    const int64_t timeUs = timeOf(narrow);
    narrow->release();
    // A buffer that served before keeps the entries of that time; this one carries its time alone.
    const FormatPtr empty(AMediaFormat_new());
    AMediaFormat_copy(wide->meta_data(), empty.get());
    AMediaFormat_setInt64(wide->meta_data(), AMEDIAFORMAT_KEY_TIME_US, timeUs);
    *buffer = wide;
    return AMEDIA_OK;
}

void OgmTrack::dumpAudio(MediaBufferHelper* buffer) const {
    const std::unique_ptr<FILE, FileCloser> file(fopen(kDumpFile, "ab"));
    // The whole capacity from the start of the buffer, not its range.
    const size_t size = file == nullptr ? 0 : buffer->size();
    if (size == 0) {
        ALOGD("Open bs_dump_OGM_AUDIO.bin failed!");
        return;
    }
    (void)fwrite(buffer->data(), 1, size, file.get());
}

}  // namespace android
