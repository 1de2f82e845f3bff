// SPDX-License-Identifier: Apache-2.0

/**
 * Reading a codec's configuration from a stream's first pages:
 *
 *     1 byte    even: MPEG-4 video, odd: MPEG audio
 *     then      payloads of pages, each after its size (2 bytes, little-endian)
 */

#define LOG_TAG "OgmFuzzer"

#include <utility>

#include "Ends.h"
#include "ScriptedSource.h"
#include "base/ByteBuffer.h"
#include "base/Format.h"
#include "stream/CodecConfig.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

/** Configures from the bytes collected so far; true if no more are needed. */
bool configure(bool isAudio, ogm::ByteBuffer* collected, AMediaFormat* format) {
    if (isAudio) {
        const media_status_t status = ogm::configureMpegAudio(collected->view(), format);
        require(status == AMEDIA_OK || status == AMEDIA_ERROR_MALFORMED, "the status for audio");
        return status == AMEDIA_OK;
    }
    if (searchesForever(collected->view())) {
        throw IntendedEnd{};
    }
    const size_t before = collected->size();
    const media_status_t status = ogm::configureMpeg4Video(collected, format);
    require(status == AMEDIA_OK || status == AMEDIA_ERROR_MALFORMED ||
                    status == AMEDIA_ERROR_UNSUPPORTED,
            "the status for video");
    require(collected->size() <= before, "bytes have come from nowhere");
    return status == AMEDIA_OK;
}

void run(InputReader* reader) {
    const bool isAudio = (reader->u8() & 1U) != 0;
    const ogm::FormatPtr format(AMediaFormat_new());
    ogm::ByteBuffer collected;
    while (!reader->empty()) {
        const size_t size = reader->u16();
        collected.append(reader->bytes(size));
        // A copy without unused memory after the bytes.
        ogm::ByteBuffer exact(collected.view());
        if (configure(isAudio, &exact, format.get())) {
            return;
        }
        collected = std::move(exact);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InputReader reader(data, size);
    (void)endsByItself([&] { run(&reader); });
    return 0;
}
