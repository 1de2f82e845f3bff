// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/CodecConfig.h"

#include <log/log.h>

#include <cinttypes>
#include <optional>

#include "base/Assert.h"
#include "base/Wrap.h"
#include "codec/MpegAudioFormat.h"
#include "codec/MpegAudioFrame.h"
#include "codec/MpegAudioHeader.h"
#include "codec/Ogmavc_utils.h"

namespace android::ogm {

namespace {

/** Pages to search for the configuration of one track, those of other streams included. */
constexpr int kMaxPages = 121;

constexpr size_t kMpegAudioHeaderSize = 4;

// Start codes of ISO/IEC 14496-2.
constexpr uint8_t kVideoObjectLayer = 0x2;  // in the high nibble
constexpr uint8_t kGroupOfVop = 0xB3;
constexpr uint8_t kVop = 0xB6;

/** Position of the first start code; nothing if there is none. */
std::optional<size_t> findStartCode(ByteView data) {
    // The position has 8 bits and wraps, so the search never ends if there are more than 257 bytes
    // and no start code in the first 256. `volatile` keeps the compiler from ending such a search.
    volatile uint8_t position = 0;
    while (size_t{position} + 2 < data.size()) {
        if (data.holds(kStartCodePrefix, position)) {
            return position;
        }
        position = static_cast<uint8_t>(position + 1);
    }
    return std::nullopt;
}

/** A start code and the bytes up to the next one. */
struct Chunk {
    ByteView bytes;
    uint8_t code;
};

/** The chunk at `offset`, where a start code must be; nothing if it has not ended yet. */
std::optional<Chunk> chunkAt(ByteView data, size_t offset) {
    const ByteView rest = data.from(offset);
    const int64_t size = GetStartCodeChunkSize(rest);
    if (size < 1) {
        return std::nullopt;
    }
    return Chunk{rest.first(static_cast<size_t>(size)), rest[kStartCodePrefix.size()]};
}

/**
 * Searches for the VOL from the start code at `start` on and removes the chunks before it from the
 * buffer. Returns where its chunk ends, or nothing if more bytes are needed.
 */
std::optional<size_t> findVideoObjectLayer(ByteBuffer* rawBuffer, size_t start, int32_t* width,
                                           int32_t* height) {
    size_t offset = start;
    for (;;) {
        const std::optional<Chunk> chunk = chunkAt(rawBuffer->view(), offset);
        if (!chunk) {
            return std::nullopt;
        }
        ALOGI("WAIT_FOR_VOL_START");
        const size_t end = offset + chunk->bytes.size();
        if (chunk->code >> 4 == kVideoObjectLayer) {
            OGM_CHECK(ExtractDimensionsFromVOLHeader(chunk->bytes, width, height), OGM_SOURCES
                      "OgmExtractor:3176 CHECK(ExtractDimensionsFromVOLHeader( "
                      "&data[offset], chunkSize, &width, &height)) failed.");
            ALOGI("set WAIT_FOR_VOP_START");
            return end;
        }
        rawBuffer->dropFront(end);
        offset = 0;
    }
}

/**
 * Where the first picture begins, searched from the start code at `start` on; nothing if more bytes
 * are needed.
 */
std::optional<size_t> findFirstPicture(ByteView data, size_t start) {
    size_t offset = start;
    for (;;) {
        const std::optional<Chunk> chunk = chunkAt(data, offset);
        if (!chunk) {
            return std::nullopt;
        }
        ALOGI("enter WAIT_FOR_VOP_START");
        if (chunk->code == kVop || chunk->code == kGroupOfVop) {
            return offset;
        }
        offset += chunk->bytes.size();
    }
}

bool appendPagePayload(const PageReader& pages, const PageStep& step, const OgmPage& page,
                       ByteBuffer* rawBuffer, SteppedCapacity* capacity) {
    ByteBuffer payload(static_cast<size_t>(step.size - page.headerSize()));
    ALOGI("pageDataSize = %d", static_cast<int>(payload.size()));
    if (!pages.readBody(wrapAdd(step.offset, page.headerSize()), payload.data(), payload.size())) {
        ALOGE("Cannot read page payload, size %d\n", static_cast<int>(payload.size()));
        return false;
    }
    rawBuffer->append(payload.view());
    if (const auto grown = capacity->growTo(rawBuffer->size())) {
        ALOGI("resizing RAW buffer to size %zu", *grown);
    }
    return true;
}

media_status_t collectCodecConfig(const PageReader& pages, const OgmStreamInfo& stream,
                                  AMediaFormat* format, int64_t firstDataPageOffset) {
    ByteBuffer rawBuffer;
    SteppedCapacity capacity;
    media_status_t result = AMEDIA_OK;
    int64_t offset = firstDataPageOffset;
    OgmPage page;
    for (int i = 0; i < kMaxPages; ++i) {
        const PageStep step = pages.nextPage(offset, &page);
        if (!step.isFound) {
            ALOGI("Cannot find a page start,LINE:2993 from %" PRId64 "\n", offset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        if (!step.hasHeader()) {
            ALOGI("Cannot read a page header, at %" PRId64 "\n", step.offset);
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        ALOGI("pageOffset=%" PRId64 ", currPageSize=%d", step.offset, static_cast<int>(step.size));
        offset = step.end();
        if (page.mSerialNo != stream.mSerialNo) {
            continue;
        }
        if (!appendPagePayload(pages, step, page, &rawBuffer, &capacity)) {
            return AMEDIA_ERROR_IO;
        }
        result = stream.mType == OGV_VIDEO_MP4 ? configureMpeg4Video(&rawBuffer, format)
                                               : configureMpegAudio(rawBuffer.view(), format);
        if (result == AMEDIA_OK) {
            ALOGI("parse CSD data done!");
            return AMEDIA_OK;
        }
    }
    return result;
}

}  // namespace

void collectCodecConfigs(const PageReader& pages, const StreamTable& streams,
                         int64_t firstDataPageOffset) {
    for (const OgmStreamInfo& stream : streams) {
        if (stream.mType == OGA_AUDIO_MP3 || stream.mType == OGA_AUDIO_MPEG) {
            ALOGI("MPEG audio, type:%d,serialNo=%d", stream.mType, stream.mSerialNo);
        } else if (stream.mType == OGV_VIDEO_MP4) {
            ALOGI("OGV_VIDEO_MP4:TYPE:%d, serialNo=%d", stream.mType, stream.mSerialNo);
        } else {
            continue;
        }
        // If two streams have the same serial number, the first one gets the format entries of
        // both.
        AMediaFormat* const format = streams.find(stream.mSerialNo)->mFormat.get();
        const media_status_t result =
                collectCodecConfig(pages, stream, format, firstDataPageOffset);
        if (result != AMEDIA_OK) {
            ALOGE("collect type[%d] fail,result=%d!", stream.mType, result);
        }
    }
}

media_status_t configureMpeg4Video(ByteBuffer* rawBuffer, AMediaFormat* format) {
    const std::optional<size_t> start = findStartCode(rawBuffer->view());
    if (!start) {
        ALOGE("can't find start code for mpeg4 video");
        return AMEDIA_ERROR_MALFORMED;
    }
    int32_t width = -1;
    int32_t height = -1;
    const std::optional<size_t> layerEnd = findVideoObjectLayer(rawBuffer, *start, &width, &height);
    const std::optional<size_t> size =
            layerEnd ? findFirstPicture(rawBuffer->view(), *layerEnd) : std::nullopt;
    if (!size) {
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    // The size is only logged; the format has that of the stream header.
    ALOGI("found MPEG4 video codec config (%d x %d)", width, height);
    const sp<ABuffer> esds = MakeESDS(rawBuffer->view().first(*size));
    AMediaFormat_setBuffer(format, AMEDIAFORMAT_KEY_ESDS, esds->data(), esds->size());
    ALOGI("get csd success!");
    return AMEDIA_OK;
}

media_status_t configureMpegAudio(ByteView data, AMediaFormat* format) {
    if (data.size() < kMpegAudioHeaderSize) {
        ALOGE("invalid size:%d", static_cast<int>(data.size()));
        return AMEDIA_ERROR_MALFORMED;
    }
    uint64_t offset = 0;
    uint32_t reference = 0;
    if (!lockMpegAudio(data, &offset, &reference)) {
        return AMEDIA_ERROR_MALFORMED;
    }
    ALOGI("mp3Header:%x", reference);
    const MpegAudioFrame frame = findMpegAudioFrame(data, offset, reference);
    switch (frame.result) {
        case MpegAudioFrame::Result::kNoMatch:
            ALOGW("not found mMP3Header,skip");
            return AMEDIA_ERROR_MALFORMED;
        case MpegAudioFrame::Result::kBadHeader:
            ALOGI("GetMPEGAudioFrameSize fail, skip this buffer");
            return AMEDIA_ERROR_MALFORMED;
        case MpegAudioFrame::Result::kIncomplete:
            ALOGI("buff size < frame size!");
            return AMEDIA_ERROR_MALFORMED;
        case MpegAudioFrame::Result::kWhole:
            break;
    }
    const uint32_t layerBits = mpegAudioLayerBits(frame.header);
    ALOGI("layer = %d\n", mpegAudioLayer(layerBits));
    OGM_CHECK(layerBits != 0, OGM_SOURCES "OgmExtractor:3322 Should not be here. ");
    setMpegAudioLayer(format, layerBits);
    return AMEDIA_OK;
}

}  // namespace android::ogm
