// SPDX-License-Identifier: Apache-2.0

/**
 * Headers of MPEG audio frames and the search for a confirmed one:
 *
 *     1 byte    where the search begins
 *     the rest  the stream; its first 4 bytes are decoded as a header too
 */

#include "Ends.h"
#include "InputReader.h"
#include "codec/MpegAudioHeader.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

/** Layer II at 160 kbit/s and 8 kHz, padded. */
constexpr uint64_t kLargestFrame = 2881;
constexpr int kConfirmationSlack = 3;

void checkHeader(uint32_t header) {
    uint64_t frameSize = 1;
    int32_t sampleRate = 1;
    int32_t channels = 1;
    int32_t bitrate = 1;
    int32_t samples = 1;
    const bool decodes = ogm::GetMPEGAudioFrameSize(header, &frameSize, &sampleRate, &channels,
                                                    &bitrate, &samples);
    if (!decodes) {
        require(frameSize == 0 && sampleRate == 0 && channels == 0 && bitrate == 0 &&
                        samples == 1152,
                "a header that does not decode has values");
        return;
    }
    require(frameSize > 0 && frameSize <= kLargestFrame, "the size of a frame");
    require(sampleRate >= 8000 && sampleRate <= 48000, "the sampling rate of a frame");
    require(channels == 1 || channels == 2, "the channels of a frame");
    require(bitrate >= 8 && bitrate <= 448, "the bitrate of a frame");
    require(samples == 384 || samples == 576 || samples == 1152, "the samples of a frame");
    const uint8_t bytes[] = {static_cast<uint8_t>(header >> 24), static_cast<uint8_t>(header >> 16),
                             static_cast<uint8_t>(header >> 8), static_cast<uint8_t>(header)};
    require(ogm::IsPlausibleMPEGAudioSync(ogm::ByteView(bytes, sizeof(bytes))),
            "a header that decodes is not plausible");
}

void checkSearch(ogm::ByteView stream, uint64_t begin) {
    uint64_t offset = begin;
    uint32_t header = 0;
    if (ogm::findMP3Header(stream, &offset, &header) != ogm::kMP3HeaderFound) {
        require(header == 0, "a header is returned that was not found");
        return;
    }
    uint64_t frameSize = 0;
    require(ogm::GetMPEGAudioFrameSize(header, &frameSize), "a confirmed header does not decode");
    require(offset < stream.size() && offset >= begin + frameSize, "the place of a confirmation");
    const ogm::ByteView rest = stream.from(offset);
    const int32_t length = static_cast<int32_t>(rest.size());
    const int32_t skip = ogm::FindMatchingMPEGAudioHeader(rest, length, header);
    require(skip < 0 || skip + 4 <= length, "a header was found past the end");
    // A confirming header that is cut off at the end of the stream need not be found.
    require(length < 4 + kConfirmationSlack || (skip >= 0 && skip <= kConfirmationSlack),
            "the confirming header is not where it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InputReader reader(data, size);
    const uint8_t begin = reader.u8();
    const ExactBlock stream(reader.rest());
    checkHeader(stream.view().u32be(0));
    (void)ogm::IsPlausibleMPEGAudioSync(stream.view());
    checkSearch(stream.view(), begin);
    return 0;
}
