// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmExtractor.h"

#include <cutils/properties.h>
#include <log/log.h>

#include <cinttypes>
#include <optional>
#include <utility>

#include "base/Wrap.h"
#include "codec/MimeTypes.h"
#include "seek/SeekPlan.h"
#include "stream/CodecConfig.h"
#include "stream/Duration.h"
#include "stream/HeaderPages.h"

namespace android {

namespace {

/** The value is not used, but the framework can observe the read. */
void readVerboseLogProperty() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get("vendor.zor.ogm.verbose.log", value, "0");
}

}  // namespace

OgmExtractor::OgmExtractor(std::unique_ptr<DataSourceHelper> dataSource)
    : mPages(std::move(dataSource)) {
    readVerboseLogProperty();
    mPages.readDataSourceSize();
    mFirstDataPageOffset = ogm::parseHeaderPages(mPages, &mStreams);
    mDuration = ogm::parseMaxTime(mPages, mStreams);
    mStreams.setDuration(mDuration);
    ogm::collectCodecConfigs(mPages, mStreams, mFirstDataPageOffset);
}

OgmExtractor::~OgmExtractor() {
    ALOGI("~OgmExtractor");
}

size_t OgmExtractor::countTracks() {
    ALOGI("Extractor return countTrackers = %d\n", static_cast<int>(mStreams.size()));
    return mStreams.size();
}

MediaTrackHelper* OgmExtractor::getTrack(size_t index) {
    ALOGI("getTrack index = %d", static_cast<int>(index));
    if (index >= mStreams.size()) {
        return nullptr;
    }
    const OgmStreamInfo& stream = mStreams[index];
    auto* const track = new OgmTrack(this, stream, mStreams.bitsPerSample(), isPastFirstDataPage());
    if (ogm::isVideoTrackType(stream.mType)) {
        ALOGI("getTrack: isVideo type[%d],frameRate =%" PRId64 ", TimeUnit=%" PRId64, stream.mType,
              stream.mSampleRate, stream.mTimeUnit);
    } else if (ogm::isAudioType(stream.mType)) {
        ALOGI("getTrack: isAudio type[%d],sampleRate =%" PRId64, stream.mType, stream.mSampleRate);
    }
    ALOGI("getTrack mSerialNo = %d", stream.mSerialNo);
    mStartedTracks.add(stream.mSerialNo, track);
    return track;
}

media_status_t OgmExtractor::getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags) {
    ALOGI("Extractor return getTrackerMetaData index = %d\n", static_cast<int>(index));
    return mStreams.getTrackMetaData(format, index, flags);
}

media_status_t OgmExtractor::getMetaData(AMediaFormat* format) {
    AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, ogm::kContainerMimeType);
    AMediaFormat_setInt64(format, AMEDIAFORMAT_KEY_DURATION, mDuration);
    AMediaFormat_setInt64(format, AMEDIAFORMAT_KEY_THUMBNAIL_TIME, 0);
    return AMEDIA_OK;
}

media_status_t OgmExtractor::copyFormat(uint32_t serialNo, AMediaFormat* format) const {
    return mStreams.copyFormat(serialNo, mDuration, format);
}

bool OgmExtractor::trackStart(int32_t serialNo, OgmTrack* track) {
    return mStartedTracks.trackStart(serialNo, track);
}

void OgmExtractor::trackStop(int32_t serialNo) {
    mStartedTracks.trackStop(serialNo);
}

void OgmExtractor::trackDestroyed(const OgmTrack* track) {
    mStartedTracks.forget(track);
}

media_status_t OgmExtractor::readNextPacket() {
    if (!mCursor.isSet()) {
        (void)seekToPage(mFirstDataPageOffset);
    }
    if (mCursor.isPageUsedUp()) {
        if (const media_status_t status = mCursor.enterNextPage(mPages); status != AMEDIA_OK) {
            return status;
        }
    }
    const auto [isRegistered, track] = mStartedTracks.find(mCursor.page().mSerialNo);
    if (isRegistered && mCursor.isAtPageStart()) {
        if (const media_status_t status = refreshGranules(track); status != AMEDIA_OK) {
            return status;
        }
    }
    if (!mSeekDone) {
        mCursor.skipPage();
        return AMEDIA_OK;
    }
    const std::optional<ogm::PacketPiece> piece = mCursor.nextPiece();
    if (!piece) {
        return AMEDIA_OK;
    }
    if (piece->offset > mPages.dataSourceSize()) {
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    return track != nullptr ? handOver(*piece, track) : handOver(*piece, &mPassing);
}

media_status_t OgmExtractor::refreshGranules(OgmTrack* track) {
    const OgmPage& page = mCursor.page();
    uint64_t next = 0;
    const media_status_t status = mCursor.getNextGranulePosition(mPages, page.mSerialNo, &next);
    if (status != AMEDIA_OK) {
        // So the packets on the last page of a stream are never returned.
        ALOGI("getNextGranulePosition fail, return %d", status);
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    uint64_t averagePerPacket = 1;
    if (page.mNumPackets >= 2) {
        if (next == 0) {
            ALOGE("getNextGranulePosition failed,set averGranulePosition to 0");
        } else {
            averagePerPacket = ogm::wrapDiv(ogm::wrapSub(next, page.mGranulePosition),
                                            uint64_t{page.mNumPackets});
        }
    }
    if (track != nullptr) {
        track->updateGranulePosition(page.mGranulePosition, averagePerPacket,
                                     isPastFirstDataPage());
    }
    return AMEDIA_OK;
}

template <typename Receiver>
media_status_t OgmExtractor::handOver(const ogm::PacketPiece& piece, Receiver* receiver) {
    ogm::ByteBuffer bytes = receiver->makePiece(piece.size);
    const bool isRead = mPages.readBody(piece.offset, bytes.data(), piece.size);
    if (isRead) {
        mCursor.use(piece);
        (void)receiver->appendData(&bytes, piece.isNewPacket, mSeeking);
    } else {
        ALOGI("Cannot read page payload, size %d\n", static_cast<int>(piece.size));
    }
    receiver->giveBack(&bytes);
    return isRead ? AMEDIA_OK : AMEDIA_ERROR_IO;
}

media_status_t OgmExtractor::seekToPage(int64_t offset) {
    const media_status_t status = mCursor.goToPage(mPages, offset, 0);
    if (status == AMEDIA_OK) {
        mStartedTracks.resetPageState(isPastFirstDataPage());
    }
    return status;
}

void OgmExtractor::seekToTime(int64_t timeUs) {
    mStartedTracks.signalDiscontinuity();
    switch (ogm::chooseSeekGoal(timeUs, mDuration)) {
        case ogm::SeekGoal::kStart:
            (void)seekToPage(mFirstDataPageOffset);
            break;
        case ogm::SeekGoal::kEnd:
            (void)seekToPage(mPages.dataSourceSize());
            break;
        case ogm::SeekGoal::kScan:
            mSeekDone = false;
            scanToTime(timeUs);
            mSeekDone = true;
            break;
    }
}

void OgmExtractor::scanToTime(int64_t seekUs) {
    const int64_t targetUs = seekUs - ogm::kSeekLeadUs;
    int64_t offset = mFirstDataPageOffset;
    if (mDuration != 0) {
        offset = ogm::estimateOffset(targetUs, mDuration, mFirstDataPageOffset,
                                     mPages.dataSourceSize());
        ALOGI("seekToTime, 2449, searchOffset=%" PRId64, offset);
    }
    // Not reset in the loop: if a later round reads nothing, it keeps the time of the round before.
    int64_t currentUs = 0;
    do {
        offset = ogm::stepBackFrom(offset);
        (void)seekToPage(offset);
        do {
            if (readNextPacket() != AMEDIA_OK) {
                break;
            }
            currentUs = mStartedTracks.getCurrentTimeUs();
        } while (currentUs < targetUs);
        ALOGI("mFirstDataPageOffset = %" PRId64 ",mDataSourceSize = %" PRId64
              ",mDuration = %" PRId64 ",searchOffset=%" PRId64 ",seekTimeUs=%" PRId64
              ",seekTargetUs=%" PRId64,
              mFirstDataPageOffset, mPages.dataSourceSize(), mDuration, offset, currentUs,
              targetUs);
        if (offset == 0) {
            ALOGI("has search seek point from file beginning, Exit!");
            return;
        }
    } while (ogm::isScanTooLate(currentUs, targetUs));
}

}  // namespace android
