// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmTrack.h"

#include <log/log.h>

#include <cinttypes>
#include <cstring>
#include <optional>
#include <utility>

#include "OgmExtractor.h"
#include "audio/OgmEsQueue.h"
#include "audio/Pcm.h"
#include "base/MediaBuffers.h"
#include "codec/FrameType.h"
#include "packet/PacketHeader.h"
#include "packet/ReadDecision.h"
#include "seek/SyncFrameSearch.h"

namespace android {

using ogm::ByteBuffer;
using ogm::ByteView;

namespace {

constexpr size_t kBufferCount = 1;
constexpr size_t kBufferSize = 256;
constexpr size_t kMaxBufferCount = 64;

/** Packets to queue before one is returned, so that reordered frames get their times. */
constexpr size_t kQueueTarget = 10;
/** The last packet is still being assembled. */
constexpr size_t kIncompletePackets = 1;

/** Every buffer has this target time, even after a seek. */
constexpr int64_t kTargetTimeUs = 0;

/** The clock counts frames for video, samples for audio. */
ogm::PacketClock clockOf(const OgmStreamInfo& stream) {
    const bool isVideo = ogm::isVideoTrackType(stream.mType);
    return {stream.mType, static_cast<int32_t>(stream.mSampleRate),
            isVideo ? static_cast<int32_t>(stream.mTimeUnit) : 0};
}

}  // namespace

OgmTrack::OgmTrack(OgmExtractor* extractor, const OgmStreamInfo& stream, uint16_t bitsPerSample,
                   bool isPastFirstDataPage)
    : mExtractor(extractor),
      mSerialNo(stream.mSerialNo),
      mType(stream.mType),
      mBitsPerSample(bitsPerSample),
      mMime(extractor->mimeOf(stream.mSerialNo)),
      mClock(clockOf(stream)),
      mPackets(stream.mSerialNo, stream.mType),
      mCutter(ogm::makeAccessUnitCutter(stream.mType)) {
    ogm::setUpEsQueue(mType);
    mClock.reset(isPastFirstDataPage);
}

OgmTrack::~OgmTrack() {
    ALOGI("Track Type[%d] destroy\n", mType);
    if (!mStopped) {
        ALOGI("~OgmTrack call stop()!");
        (void)OgmTrack::stop();
    } else if (mRestarted) {
        // A track that was stopped before is not stopped again, and its stream stays registered:
        // its pages are still read, but its packets are dropped.
        mExtractor->trackDestroyed(this);
    }
}

media_status_t OgmTrack::start() {
    ALOGI("OgmTrack:[start] mSerialNo[%d]\n", mSerialNo);
    // A track that was never stopped is still registered from its creation.
    if (mStopped && mExtractor->trackStart(static_cast<int32_t>(mSerialNo), this)) {
        mRestarted = true;
    }
    (void)mBufferGroup->init(kBufferCount, kBufferSize, kMaxBufferCount);
    return AMEDIA_OK;
}

media_status_t OgmTrack::stop() {
    ALOGI("OgmTrack:[stop] mSerialNo[%d]\n", mSerialNo);
    mExtractor->trackStop(static_cast<int32_t>(mSerialNo));
    mStopped = true;
    mRestarted = false;
    return AMEDIA_OK;
}

media_status_t OgmTrack::getFormat(AMediaFormat* format) {
    logGetFormat();
    return mExtractor->copyFormat(mSerialNo, format);
}

void OgmTrack::logGetFormat() const {
    ALOGI("getFormat: Track type[%d]", mType);
}

media_status_t OgmTrack::read(MediaBufferHelper** buffer, const ReadOptions* options) {
    const std::lock_guard<std::mutex> lock(mExtractor->lock());

    // Each read logs a request for the format, although only the MIME type is used, for the log.
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
    if (status == AMEDIA_OK && mType == OGA_AUDIO_PCM) {
        status = ogm::reworkPcm(mBitsPerSample, mBufferGroup, buffer);
    }
    if (status != AMEDIA_OK) {
        return status;
    }
    ALOGI("after read mime:%s IsIFrame:%d, timeUs:%" PRId64 ", size:%d", mimeText(),
          ogm::syncFlagOf(*buffer), ogm::timeOf(*buffer),
          static_cast<int>((*buffer)->range_length()));
    if (mDump.isOn() && ogm::isAudioType(mType)) {
        mDump.write(*buffer);
    }
    return AMEDIA_OK;
}

media_status_t OgmTrack::fillQueue() {
    media_status_t result = AMEDIA_OK;
    while (mPackets.size() < kQueueTarget && result == AMEDIA_OK) {
        result = mExtractor->readNextPacket();
    }
    return result;
}

media_status_t OgmTrack::takePacket(MediaBufferHelper** buffer) {
    const bool hadCompletePackets = mPackets.size() > kIncompletePackets;
    const media_status_t result = fillQueue();
    switch (ogm::decideAfterFilling(result, hadCompletePackets, mPackets.size())) {
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

MediaBufferHelper* OgmTrack::dequeueFrame(int64_t targetTimeUs) {
    const OgmPacket& packet = mPackets.front();
    const ByteView data = packet.bytes.view();
    const std::optional<size_t> headerSize = ogm::frameHeaderSize(mType, data);
    if (!headerSize || *headerSize > data.size()) {
        return nullptr;
    }
    const ByteView payload = data.from(*headerSize);
    MediaBufferHelper* const buffer = ogm::acquireBuffer(mBufferGroup, payload.size());
    if (buffer == nullptr) {
        return nullptr;
    }
    AMediaFormat* const meta = buffer->meta_data();
    if (targetTimeUs >= 0) {
        AMediaFormat_setInt64(meta, AMEDIAFORMAT_KEY_TARGET_TIME, targetTimeUs);
    }
    const int64_t timeUs = displayTimeUs(packet);
    if (!payload.empty()) {
        std::memcpy(buffer->data(), payload.data(), payload.size());
    }
    buffer->set_range(0, payload.size());
    AMediaFormat_setInt64(meta, AMEDIAFORMAT_KEY_TIME_US, timeUs);
    if (ogm::isVideoPacketType(mType)) {
        AMediaFormat_setInt32(meta, AMEDIAFORMAT_KEY_IS_SYNC_FRAME,
                              packet.frameType == ogm::kIntraFrame ? 1 : 0);
    }
    mPackets.popFront();
    return buffer;
}

int64_t OgmTrack::displayTimeUs(const OgmPacket& packet) const {
    if (!ogm::isFrameTypedVideo(mType)) {
        return packet.timeUs;
    }
    // Not for a B frame: if 255 more B frames followed it, the count would never end.
    const bool isBFrame = packet.frameType == ogm::kBidirectionalFrame;
    return mClock.displayTimeUs(packet, isBFrame ? 0 : mPackets.countFollowingFrameType3());
}

media_status_t OgmTrack::appendData(ByteBuffer* packet, bool isNewPacket, bool isSeeking) {
    const std::lock_guard<std::mutex> lock(mLock);
    if (ogm::isAudioType(mType) && isSeeking) {
        ALOGI("********** Track Type[%d] skip appending data because seeking*************\n",
              mType);
        return AMEDIA_OK;
    }
    if (packet == nullptr) {
        ALOGI("appendData Buffer null\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    if (mCutter != nullptr) {
        return appendAccessUnits(packet, isNewPacket);
    }
    if (isNewPacket) {
        const std::optional<int64_t> timeUs = mClock.packetTimeUs(packet->size());
        if (!timeUs) {
            // Later pieces of this packet are not dropped: they are appended to the packet before.
            return AMEDIA_OK;
        }
        mPackets.beginPacket(*timeUs, mClock.granulePosition());
    }
    mPackets.appendBytes(packet);
    return AMEDIA_OK;
}

media_status_t OgmTrack::appendAccessUnits(ByteBuffer* piece, bool isNewPacket) {
    const std::optional<int64_t> timeUs = mClock.accessUnitTimeUs(piece->size());
    if (!timeUs) {
        return AMEDIA_OK;
    }
    if (isNewPacket) {
        if (piece->size() <= ogm::kMaxEmptyAudioPacket) {
            ALOGE("Invalid append buffer size:%d", static_cast<int>(piece->size()));
            return AMEDIA_ERROR_MALFORMED;
        }
        piece->dropFront(ogm::audioPacketHeaderSize(piece->view()[0]));
        mClock.countPacket();
    }
    if (!ogm::appendAudioData(*mCutter, &mStream, piece, *timeUs)) {
        ALOGE("appendAudioData FAIL!");
        return AMEDIA_ERROR_MALFORMED;
    }
    // Before frames are cut: their copies may use the piece's memory.
    mPackets.giveBack(piece);
    while (std::optional<AccessUnit> unit = mCutter->dequeueAccessUnit(&mStream, &mPackets)) {
        // All units of a packet get the packet's time; the unit's own time is not used.
        mPackets.addAccessUnit(*timeUs, mClock.granulePosition(), std::move(unit->bytes));
    }
    return AMEDIA_OK;
}

void OgmTrack::signalDiscontinuity() {
    if (!ogm::hasEsQueue(mType)) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mLock);
    ALOGI("OgmTrack:mSerialNo[%d] signalDiscontinuity!", mSerialNo);
    dropQueued();
}

void OgmTrack::dropQueued() {
    mStream.clear();
    mPackets.clear();
}

media_status_t OgmTrack::seek(int64_t timeUs) {
    ALOGI("begin seek to %" PRId64 " us mime:%s", timeUs, mimeText());
    // Only the selected track moves the cursor. The others continue from there.
    if (mExtractor->isSelected(mSerialNo)) {
        mExtractor->setSeeking(true);
        ALOGD("Start seekToTime");
        mExtractor->seekToTime(timeUs);
        ALOGD("End seekToTime");
        if (ogm::isVideoTrackType(mType)) {
            const media_status_t status = findSyncFrame(timeUs);
            if (status != AMEDIA_OK) {
                // Still seeking: audio is dropped until a seek of this track succeeds.
                return status;
            }
        }
        mExtractor->setSeeking(false);
    }
    ALOGI("after seek to %" PRId64 " us mime:%s", timeUs, mimeText());
    return AMEDIA_OK;
}

media_status_t OgmTrack::findSyncFrame(int64_t seekUs) {
    ogm::SyncFrameSearch search(seekUs);
    while (search.isSearching()) {
        const media_status_t result = fillQueue();
        if (result == AMEDIA_ERROR_IO) {
            ALOGE("Read Data fail,return ERROR_IO");
            return AMEDIA_ERROR_IO;
        }
        if (result == AMEDIA_ERROR_END_OF_STREAM) {
            search.noteEndOfFile();
        }
        if (search.searchQueue(&mPackets) == ogm::SyncFrameSearch::Result::kTooLate) {
            search.stepBack();
            dropQueued();
            mExtractor->seekToTime(search.timeUs());
            ALOGI("read, 1228, Can't find I frame after time %" PRId64 ", leavings search times:%d",
                  search.timeUs(), search.retries());
        }
    }
    return AMEDIA_OK;
}

}  // namespace android
