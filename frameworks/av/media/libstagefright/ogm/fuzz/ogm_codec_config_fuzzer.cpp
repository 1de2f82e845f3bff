// SPDX-License-Identifier: Apache-2.0

/**
 * What is learnt about a stream from its first pages:
 *
 *     1 byte    MPEG-4 video, or MPEG audio for an odd number
 *     then      payloads of pages, each with its size (2 bytes, little-endian) in front
 */

#define LOG_TAG "OgmFuzzer"

#include <memory>
#include <utility>

#include "Bytes.h"
#include "Ends.h"
#include "OgmExtractor.h"
#include "OgmFile.h"
#include "ScriptedSource.h"
#include "base/ByteBuffer.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

constexpr uint32_t kSerialNo = 1;

/** A file of a header page alone. */
Bytes headerFile(bool isAudio) {
    ogm::test::OgmFile file;
    if (isAudio) {
        ogm::test::AudioHeader header;
        header.subtype = "0055";
        file.addHeader(kSerialNo, header);
    } else {
        ogm::test::VideoHeader header;
        header.subtype = "FMP4";
        file.addHeader(kSerialNo, header);
    }
    return file.bytes();
}

/** Configures with the bytes that have been collected; true when no more are needed. */
bool configure(OgmExtractor* extractor, bool isAudio, ogm::ByteBuffer* collected) {
    if (isAudio) {
        const media_status_t status = extractor->configureMpegAudio(kSerialNo, collected->view());
        require(status == AMEDIA_OK || status == AMEDIA_ERROR_MALFORMED, "the status for audio");
        return status == AMEDIA_OK;
    }
    if (searchesForEver(collected->view())) {
        throw DemandedEnd{};
    }
    const size_t before = collected->size();
    const media_status_t status = extractor->configureMpeg4Video(kSerialNo, collected);
    require(status == AMEDIA_OK || status == AMEDIA_ERROR_MALFORMED ||
                    status == AMEDIA_ERROR_UNSUPPORTED,
            "the status for video");
    require(collected->size() <= before, "bytes have come from nowhere");
    return status == AMEDIA_OK;
}

void run(InputReader* reader) {
    const bool isAudio = (reader->u8() & 1U) != 0;
    SessionInput input;
    input.file = headerFile(isAudio);
    ScriptedSource source(input, input.file);
    OgmExtractor extractor(std::make_unique<DataSourceHelper>(source.table()));
    ogm::ByteBuffer collected;
    while (!reader->empty()) {
        const size_t size = reader->u16();
        collected.append(reader->bytes(size));
        // Without room behind the bytes.
        ogm::ByteBuffer exact(collected.view());
        if (configure(&extractor, isAudio, &exact)) {
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
