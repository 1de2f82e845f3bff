// SPDX-License-Identifier: Apache-2.0

/** The first packet of a stream, which is the whole input. */

#define LOG_TAG "OgmFuzzer"

#include <media/stagefright/MediaBuffer.h>

#include <algorithm>
#include <cstring>

#include "Ends.h"
#include "stream/StreamHeader.h"
#include "stream/StreamTable.h"
#include "stream/StreamTypes.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

constexpr uint32_t kSerialNo = 1;

void checkFormat(ogm::StreamTable* streams, const ogm::StreamHeader& header) {
    const ogm::FormatPtr format(AMediaFormat_new());
    require(streams->getTrackMetaData(format.get(), 0, 0) == AMEDIA_OK, "a track has no format");
    const char* mime = nullptr;
    require(AMediaFormat_getString(format.get(), AMEDIAFORMAT_KEY_MIME, &mime),
            "a track has no MIME type");
    const bool isVideo = std::strncmp(mime, "video/", 6) == 0;
    int32_t value = 0;
    if (isVideo) {
        require(AMediaFormat_getInt32(format.get(), AMEDIAFORMAT_KEY_WIDTH, &value) &&
                        value == header.width,
                "the width is not the header's");
        require(AMediaFormat_getInt32(format.get(), AMEDIAFORMAT_KEY_HEIGHT, &value) &&
                        value == header.height,
                "the height is not the header's");
    } else {
        require(AMediaFormat_getInt32(format.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT, &value) &&
                        value == header.channels,
                "the channels are not the header's");
        require(AMediaFormat_getInt32(format.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE, &value) &&
                        value == header.sampleRate(),
                "the sample rate is not the header's");
    }
    const OgmStreamInfo* const stream = streams->find(kSerialNo);
    require(stream != nullptr && ogm::isVideoTrackType(stream->mType) == isVideo &&
                    ogm::isAudioType(stream->mType) != isVideo,
            "the type of a stream and its MIME type differ");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ogm::StreamTable streams;
    // A MediaBuffer cannot be deleted; release() frees it.
    auto* const buffer = new MediaBuffer(size);
    std::copy_n(data, size, static_cast<uint8_t*>(buffer->data()));
    const media_status_t status = streams.parseOgmHeader(*buffer, kSerialNo);
    buffer->release();
    require(status == AMEDIA_OK || status == AMEDIA_ERROR_UNSUPPORTED, "the status of a header");
    require(streams.size() <= (status == AMEDIA_OK ? 1U : 0U), "a refused header makes a track");
    if (streams.size() == 1) {
        checkFormat(&streams, ogm::StreamHeader(ogm::ByteView(data, size)));
    }
    return 0;
}
