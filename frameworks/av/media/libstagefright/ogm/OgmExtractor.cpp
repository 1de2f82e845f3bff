// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmExtractor.h"

#include <cutils/properties.h>

#include <utility>

#include "base/Wrap.h"
#include "stream/MimeTypes.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::wrapAdd;

namespace {

/** Streams are announced within the first pages; further on none is looked for. */
constexpr int kMaxHeaderPages = 121;
constexpr int kHeaderSearchLine = 2774;

constexpr int32_t kNoSerialNo = -1;

/** Read for the log level of this plug-in's kin; nothing here depends on its value. */
void readVerboseLogProperty() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get("vendor.zor.ogm.verbose.log", value, "0");
}

}  // namespace

OgmExtractor::OgmExtractor(std::unique_ptr<DataSourceHelper> dataSource)
    : mDataSource(std::move(dataSource)) {
    readVerboseLogProperty();
    off64_t size = 0;
    if (mDataSource->getSize(&size) == OK) {
        mDataSourceSize = size;
    }
    // A damaged file gives fewer tracks or no duration, never a failure, so no result counts.
    parseHeaderPages();
    parseMaxTime();
    collectCodecConfigs();
    resetTracks();
}

OgmExtractor::~OgmExtractor() {
    ALOGI("~OgmExtractor");
    mStartedTracks.clear();
    mTracks.clear();
}

media_status_t OgmExtractor::parseHeaderPages() {
    media_status_t result = AMEDIA_OK;
    bool sawDataPage = false;
    int64_t offset = 0;
    for (int pages = 0; pages < kMaxHeaderPages; ++pages) {
        int64_t pageOffset = 0;
        // Twice over: what the first search reads and logs is part of opening, its result is not.
        (void)FindPage(offset, &pageOffset, 0);
        if (FindPage(offset, &pageOffset, 0) != AMEDIA_OK) {
            ALOGI("Cannot find a page start,LINE:%d from %ld\n", kHeaderSearchLine, offset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        OgmPage page;
        const int64_t pageSize = readPage(pageOffset, &page);
        if (pageSize < 1) {
            ALOGI("Cannot read a page header, at %ld\n", pageOffset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        if ((page.mFlags & OgmPage::kFirstPage) != 0) {
            // The junk that was skipped is not counted in: behind it the packet is not found.
            result = readStreamHeader(offset, pageSize, page);
            if (result == AMEDIA_ERROR_IO) {
                return result;
            }
        } else if (!sawDataPage) {
            sawDataPage = true;
            mFirstDataPageOffset = offset;
            ALOGI("mFirstDataPageOffset = %ld", mFirstDataPageOffset);
        }
        offset = wrapAdd(pageOffset, pageSize);
    }
    return result;
}

media_status_t OgmExtractor::readStreamHeader(int64_t pageOffset, int64_t pageSize,
                                              const OgmPage& page) {
    const auto bodySize = static_cast<size_t>(pageSize - page.headerSize());
    ALOGD("currPage.mNumSegments =%d, pageDataSize =%d", page.mNumSegments,
          static_cast<int>(bodySize));
    // A MediaBuffer cannot be deleted: it goes with its one release.
    auto* const buffer = new MediaBuffer(bodySize);
    const ssize_t count =
            mDataSource->readAt(wrapAdd(pageOffset, page.headerSize()), buffer->data(), bodySize);
    media_status_t result = AMEDIA_ERROR_IO;
    if (count == static_cast<ssize_t>(bodySize)) {
        result = parseOgmHeader(*buffer, page.mSerialNo);
    } else {
        ALOGE("Cannot read page data, size %d\n", static_cast<int>(bodySize));
    }
    buffer->release();
    return result;
}

size_t OgmExtractor::countTracks() {
    ALOGI("Extractor return countTrackers = %d\n", static_cast<int>(mTracks.size()));
    return mTracks.size();
}

MediaTrackHelper* OgmExtractor::getTrack(size_t index) {
    ALOGI("getTrack index = %d", static_cast<int>(index));
    if (index >= mTracks.size()) {
        return nullptr;
    }
    const OgmStreamInfo& stream = mTracks[index];
    auto* const track = new OgmTrack(this, stream.mSerialNo, stream.mType, mBitsPerSample);
    if (ogm::isVideoTrackType(stream.mType)) {
        ALOGI("getTrack: isVideo type[%d],frameRate =%lld, TimeUnit=%lld",
              static_cast<int>(stream.mType), static_cast<long long>(stream.mSampleRate),
              static_cast<long long>(stream.mTimeUnit));
        track->setSampleRate(static_cast<int32_t>(stream.mSampleRate));
        track->setTimeUnit(static_cast<int32_t>(stream.mTimeUnit));
        mHasVideo = true;
    } else if (ogm::isAudioType(stream.mType)) {
        ALOGI("getTrack: isAudio type[%d],sampleRate =%lld", static_cast<int>(stream.mType),
              static_cast<long long>(stream.mSampleRate));
        track->setSampleRate(static_cast<int32_t>(stream.mSampleRate));
    }
    ALOGI("getTrack mSerialNo = %d", static_cast<int>(stream.mSerialNo));
    mStartedTracks[stream.mSerialNo] = track;
    if (mSelectedSerialNo == kNoSerialNo) {
        mSelectedSerialNo = static_cast<int32_t>(stream.mSerialNo);
    }
    return track;
}

media_status_t OgmExtractor::getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags) {
    ALOGI("Extractor return getTrackerMetaData index = %d\n", static_cast<int>(index));
    if (index >= mTracks.size()) {
        ALOGE("%s,invalid index[%d]", "getTrackMetaData", static_cast<int>(index));
        return AMEDIA_ERROR_UNKNOWN;
    }
    const std::lock_guard<std::mutex> lock(mFormatLock);
    AMediaFormat* const own = mTracks[index].mFormat.get();
    const char* mime = nullptr;
    if (AMediaFormat_getString(own, AMEDIAFORMAT_KEY_MIME, &mime)) {
        ALOGI("getTrackMetaData mime:%s", mime);
    }
    // Once in the extractor's life, for the track that is asked about first.
    if ((flags & kIncludeExtensiveMetaData) != 0 && !mThumbnailTimeSet) {
        ALOGI("%s, set thumbnail time", "getTrackMetaData");
        AMediaFormat_setInt64(own, AMEDIAFORMAT_KEY_THUMBNAIL_TIME, 0);
        mThumbnailTimeSet = true;
    }
    AMediaFormat_copy(format, own);
    return AMEDIA_OK;
}

std::string OgmExtractor::mimeOf(uint32_t serialNo) {
    const OgmStreamInfo* const stream = findStream(serialNo);
    const std::lock_guard<std::mutex> lock(mFormatLock);
    const char* mime = nullptr;
    const bool known = stream != nullptr &&
                       AMediaFormat_getString(stream->mFormat.get(), AMEDIAFORMAT_KEY_MIME, &mime);
    return known ? std::string(mime) : std::string();
}

media_status_t OgmExtractor::copyFormat(uint32_t serialNo, AMediaFormat* format) {
    const OgmStreamInfo* const stream = findStream(serialNo);
    if (stream == nullptr) {
        return AMEDIA_ERROR_MALFORMED;
    }
    const std::lock_guard<std::mutex> lock(mFormatLock);
    AMediaFormat_setInt64(stream->mFormat.get(), AMEDIAFORMAT_KEY_DURATION, mDuration);
    AMediaFormat_copy(format, stream->mFormat.get());
    return AMEDIA_OK;
}

media_status_t OgmExtractor::getMetaData(AMediaFormat* format) {
    AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, ogm::kContainerMimeType);
    AMediaFormat_setInt64(format, AMEDIAFORMAT_KEY_DURATION, mDuration);
    AMediaFormat_setInt64(format, AMEDIAFORMAT_KEY_THUMBNAIL_TIME, 0);
    return AMEDIA_OK;
}

void OgmExtractor::trackStart(int32_t serialNo, OgmTrack* track) {
    if (mSelectedSerialNo == kNoSerialNo) {
        mSelectedSerialNo = serialNo;
    }
    const bool added = mStartedTracks.emplace(static_cast<uint32_t>(serialNo), track).second;
    if (!added) {
        ALOGE("[start] Error, the serialNo[%d] is already started!!!", serialNo);
    }
}

void OgmExtractor::trackStop(int32_t serialNo) {
    mStartedTracks.erase(static_cast<uint32_t>(serialNo));
    if (mSelectedSerialNo == serialNo) {
        mSelectedSerialNo = mStartedTracks.empty()
                                    ? kNoSerialNo
                                    : static_cast<int32_t>(mStartedTracks.begin()->first);
    }
    ALOGI("trackStop:serialNo=%d, mSelectedSerialNo=%d", serialNo, mSelectedSerialNo);
}

void OgmExtractor::trackDestroyed(const OgmTrack* track) {
    for (auto& [serialNo, registered] : mStartedTracks) {
        if (registered == track) {
            registered = nullptr;
        }
    }
}

OgmStreamInfo* OgmExtractor::findStream(uint32_t serialNo) {
    for (OgmStreamInfo& stream : mTracks) {
        if (stream.mSerialNo == serialNo) {
            return &stream;
        }
    }
    return nullptr;
}

}  // namespace android
