// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmExtractor.h"
#include "base/Assert.h"
#include "base/Wrap.h"
#include "codec/MpegAudioFormat.h"
#include "codec/Ogmavc_utils.h"

namespace android {

using ogm::ByteBuffer;
using ogm::ByteView;
using ogm::wrapAdd;

namespace {

/** Pages of any stream that are searched for one track's configuration. */
constexpr int kMaxPages = 121;
constexpr int kPageSearchLine = 2993;

constexpr size_t kMpegAudioHeaderSize = 4;

// Start codes of ISO/IEC 14496-2.
constexpr uint8_t kVideoObjectLayer = 0x2;  // in the high nibble
constexpr uint8_t kGroupOfVop = 0xB3;
constexpr uint8_t kVop = 0xB6;

enum class VideoConfigState { WAIT_FOR_VOL_START, WAIT_FOR_VOP_START };

/** The first start code; nothing when there is none. */
std::optional<size_t> findStartCode(ByteView data) {
    // The position has 8 bits and wraps: with more than 257 bytes and no start code among the first
    // ones the search goes on for ever. It is volatile so that a search without end stays one.
    volatile uint8_t position = 0;
    while (size_t{position} + 2 < data.size()) {
        if (data.holds(ogm::kStartCodePrefix, position)) {
            return position;
        }
        position = static_cast<uint8_t>(position + 1);
    }
    return std::nullopt;
}

/**
 * Looks, from the first start code on, for the VOL and then for what begins the first picture; what
 * precedes the VOL is removed from the buffer. Returns where the configuration ends, or nothing
 * when more bytes are needed.
 */
std::optional<size_t> findVideoConfig(ByteBuffer* rawBuffer, size_t start, int32_t* width,
                                      int32_t* height) {
    VideoConfigState state = VideoConfigState::WAIT_FOR_VOL_START;
    size_t offset = start;
    for (;;) {
        const ByteView rest = rawBuffer->view().from(offset);
        const int64_t chunkSize = ogm::GetStartCodeChunkSize(rest);
        if (chunkSize < 1) {
            return std::nullopt;
        }
        const ByteView chunk = rest.first(static_cast<size_t>(chunkSize));
        const uint8_t code = rest[ogm::kStartCodePrefix.size()];
        if (state == VideoConfigState::WAIT_FOR_VOP_START) {
            ALOGI("enter WAIT_FOR_VOP_START");
            if (code == kVop || code == kGroupOfVop) {
                return offset;
            }
            offset += chunk.size();
            continue;
        }
        ALOGI("WAIT_FOR_VOL_START");
        if (code >> 4 != kVideoObjectLayer) {
            rawBuffer->dropFront(offset + chunk.size());
            offset = 0;
            continue;
        }
        OGM_CHECK(ogm::ExtractDimensionsFromVOLHeader(chunk, width, height), OGM_SOURCES
                  "OgmExtractor:3176 CHECK(ExtractDimensionsFromVOLHeader( "
                  "&data[offset], chunkSize, &width, &height)) failed.");
        ALOGI("set WAIT_FOR_VOP_START");
        offset += chunk.size();
        state = VideoConfigState::WAIT_FOR_VOP_START;
    }
}

}  // namespace

void OgmExtractor::collectCodecConfigs() {
    for (const OgmStreamInfo& stream : mTracks) {
        const int type = static_cast<int>(stream.mType);
        const int serialNo = static_cast<int>(stream.mSerialNo);
        if (stream.mType == OGA_AUDIO_MP3 || stream.mType == OGA_AUDIO_MPEG) {
            ALOGI("MPEG audio, type:%d,serialNo=%d", type, serialNo);
        } else if (stream.mType == OGV_VIDEO_MP4) {
            ALOGI("OGV_VIDEO_MP4:TYPE:%d, serialNo=%d", type, serialNo);
        } else {
            continue;
        }
        const media_status_t result = collectCodecConfig(stream);
        if (result != AMEDIA_OK) {
            ALOGE("collect type[%d] fail,result=%d!", type, result);
        }
    }
}

media_status_t OgmExtractor::collectCodecConfig(const OgmStreamInfo& stream) {
    ByteBuffer rawBuffer;
    ogm::SteppedCapacity capacity;
    media_status_t result = AMEDIA_OK;
    int64_t offset = mFirstDataPageOffset;
    for (int pages = 0; pages < kMaxPages; ++pages) {
        int64_t pageOffset = 0;
        if (FindPage(offset, &pageOffset, 0) != AMEDIA_OK) {
            ALOGI("Cannot find a page start,LINE:%d from %ld\n", kPageSearchLine, offset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        OgmPage page;
        const int64_t pageSize = readPage(pageOffset, &page);
        if (pageSize < 1) {
            ALOGI("Cannot read a page header, at %ld\n", pageOffset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        ALOGI("pageOffset=%ld, currPageSize=%d", pageOffset, static_cast<int>(pageSize));
        offset = wrapAdd(pageOffset, pageSize);
        if (page.mSerialNo != stream.mSerialNo) {
            continue;
        }
        if (!appendPagePayload(pageOffset, pageSize, page, &rawBuffer, &capacity)) {
            return AMEDIA_ERROR_IO;
        }
        result = stream.mType == OGV_VIDEO_MP4
                         ? configureMpeg4Video(stream.mSerialNo, &rawBuffer)
                         : configureMpegAudio(stream.mSerialNo, rawBuffer.view());
        if (result == AMEDIA_OK) {
            ALOGI("parse CSD data done!");
            return AMEDIA_OK;
        }
    }
    return result;
}

bool OgmExtractor::appendPagePayload(int64_t pageOffset, int64_t pageSize, const OgmPage& page,
                                     ByteBuffer* rawBuffer, ogm::SteppedCapacity* capacity) {
    ByteBuffer payload(static_cast<size_t>(pageSize - page.headerSize()));
    const auto size = static_cast<ssize_t>(payload.size());
    ALOGI("pageDataSize = %d", static_cast<int>(size));
    if (mDataSource->readAt(wrapAdd(pageOffset, page.headerSize()), payload.data(),
                            payload.size()) != size) {
        ALOGE("Cannot read page payload, size %d\n", static_cast<int>(size));
        return false;
    }
    rawBuffer->append(payload.view());
    if (const auto grown = capacity->growTo(rawBuffer->size())) {
        ALOGI("resizing RAW buffer to size %zu", *grown);
    }
    return true;
}

media_status_t OgmExtractor::configureMpeg4Video(uint32_t serialNo, ByteBuffer* rawBuffer) {
    const OgmStreamInfo* const stream = findStream(serialNo);
    if (stream == nullptr || stream->mFormat == nullptr) {
        ALOGE("There is no serialNo[%d] in tracks", static_cast<int>(serialNo));
        return AMEDIA_ERROR_MALFORMED;
    }
    const std::optional<size_t> start = findStartCode(rawBuffer->view());
    if (!start) {
        ALOGE("can't find start code for mpeg4 video");
        return AMEDIA_ERROR_MALFORMED;
    }
    int32_t width = -1;
    int32_t height = -1;
    const std::optional<size_t> size = findVideoConfig(rawBuffer, *start, &width, &height);
    if (!size) {
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    // The size goes no further than this line: the stream header's counts.
    ALOGI("found MPEG4 video codec config (%d x %d)", width, height);
    const sp<ABuffer> esds = ogm::MakeESDS(rawBuffer->view().first(*size));
    AMediaFormat_setBuffer(stream->mFormat.get(), AMEDIAFORMAT_KEY_ESDS, esds->data(),
                           esds->size());
    ALOGI("get csd success!");
    return AMEDIA_OK;
}

media_status_t OgmExtractor::configureMpegAudio(uint32_t serialNo, ByteView data) {
    if (data.size() < kMpegAudioHeaderSize) {
        ALOGE("invalid size:%d", static_cast<int>(data.size()));
        return AMEDIA_ERROR_MALFORMED;
    }
    uint64_t offset = 0;
    uint32_t reference = 0;
    if (ogm::findMP3Header(data, &offset, &reference) != ogm::kMP3HeaderFound) {
        if (data.size() > ogm::kMaxHeaderSearch) {
            ALOGE("findMP3Header fail size>%d, skip this buffer",
                  static_cast<int>(ogm::kMaxHeaderSearch));
        } else {
            ALOGW("Not get mMP3Header, size:%d", static_cast<int>(data.size()));
        }
        return AMEDIA_ERROR_MALFORMED;
    }
    ALOGI("mp3Header:%x", reference);
    const ByteView rest = data.from(offset);
    const int32_t skip =
            ogm::FindMatchingMPEGAudioHeader(rest, static_cast<int32_t>(rest.size()), reference);
    if (skip < 0) {
        ALOGW("not found mMP3Header,skip");
        return AMEDIA_ERROR_MALFORMED;
    }
    const ByteView frame = rest.from(static_cast<size_t>(skip));
    uint64_t frameSize = 0;
    if (!ogm::GetMPEGAudioFrameSize(frame.u32be(0), &frameSize)) {
        ALOGI("GetMPEGAudioFrameSize fail, skip this buffer");
        return AMEDIA_ERROR_MALFORMED;
    }
    if (frame.size() < frameSize) {
        ALOGI("buff size < frame size!");
        return AMEDIA_ERROR_MALFORMED;
    }
    const uint32_t layerBits = ogm::mpegAudioLayerBits(frame.u32be(0));
    ALOGI("layer = %d\n", ogm::mpegAudioLayer(layerBits));
    OGM_CHECK(layerBits != 0, OGM_SOURCES "OgmExtractor:3322 Should not be here. ");
    ogm::setMpegAudioLayer(findStream(serialNo)->mFormat.get(), layerBits);
    return AMEDIA_OK;
}

}  // namespace android
