// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "avc_utils"

#include "codec/MpegAudioHeader.h"

#include <log/log.h>

namespace android::ogm {

namespace {

/** The fields that are equal in all frames of a stream: sync, version, layer, sampling rate. */
constexpr uint32_t kAgreementMask = 0xFFFE0C00;
constexpr uint32_t kSyncMask = 0xFFE00000;
constexpr size_t kHeaderSize = 4;
/** The confirming header may be up to this many bytes later than the frame size says. */
constexpr size_t kConfirmationSlack = 3;

enum Version : uint32_t { kMpeg25 = 0, kReservedVersion = 1, kMpeg2 = 2, kMpeg1 = 3 };

constexpr uint32_t kReservedLayer = 0;
constexpr uint32_t kLayerIII = 1;
constexpr uint32_t kLayerI = 3;
constexpr uint32_t kFreeBitrate = 0;
constexpr uint32_t kBadBitrate = 15;
constexpr uint32_t kReservedRate = 3;
constexpr uint32_t kSingleChannel = 3;

// For MPEG-1, in Hz, by sampling-rate index.
constexpr int32_t kSampleRates[] = {44100, 48000, 32000};

// In kbit/s, by bitrate index - 1.
constexpr size_t kBitrates = 14;
constexpr int32_t kLayerIMpeg1[kBitrates] = {32,  64,  96,  128, 160, 192, 224,
                                             256, 288, 320, 352, 384, 416, 448};
constexpr int32_t kLayerIMpeg2[kBitrates] = {32,  48,  56,  64,  80,  96,  112,
                                             128, 144, 160, 176, 192, 224, 256};
constexpr int32_t kLayerIIMpeg1[kBitrates] = {32,  48,  56,  64,  80,  96,  112,
                                              128, 160, 192, 224, 256, 320, 384};
constexpr int32_t kLayerIIIMpeg1[kBitrates] = {32,  40,  48,  56,  64,  80,  96,
                                               112, 128, 160, 192, 224, 256, 320};
constexpr int32_t kLayerIIAndIIIMpeg2[kBitrates] = {8,  16, 24, 32,  40,  48,  56,
                                                    64, 80, 96, 112, 128, 144, 160};

struct Fields {
    uint32_t version;
    uint32_t layer;
    uint32_t bitrateIndex;
    uint32_t rateIndex;
    int32_t padding;
    uint32_t channelMode;

    explicit constexpr Fields(uint32_t header)
        : version(header >> 19 & 3),
          layer(mpegAudioLayerBits(header)),
          bitrateIndex(header >> 12 & 15),
          rateIndex(header >> 10 & 3),
          padding(static_cast<int32_t>(header >> 9 & 1)),
          channelMode(header >> 6 & 3) {}

    constexpr bool isMpeg1() const { return version == kMpeg1; }
};

bool isDecodable(uint32_t header) {
    const Fields fields(header);
    return (header & kSyncMask) == kSyncMask && fields.version != kReservedVersion &&
           fields.layer != kReservedLayer && fields.bitrateIndex != kFreeBitrate &&
           fields.bitrateIndex != kBadBitrate && fields.rateIndex != kReservedRate;
}

int32_t sampleRateOf(const Fields& fields) {
    const int shift = fields.isMpeg1() ? 0 : fields.version == kMpeg2 ? 1 : 2;
    return kSampleRates[fields.rateIndex] >> shift;
}

int32_t bitrateOf(const Fields& fields) {
    const size_t row = fields.bitrateIndex - 1;
    if (fields.layer == kLayerI) {
        return fields.isMpeg1() ? kLayerIMpeg1[row] : kLayerIMpeg2[row];
    }
    if (!fields.isMpeg1()) {
        return kLayerIIAndIIIMpeg2[row];
    }
    return fields.layer == kLayerIII ? kLayerIIIMpeg1[row] : kLayerIIMpeg1[row];
}

int32_t samplesPerFrameOf(const Fields& fields) {
    if (fields.layer == kLayerI) {
        return 384;
    }
    return fields.layer == kLayerIII && !fields.isMpeg1() ? 576 : 1152;
}

/** In bytes. A frame consists of slots of one byte, in layer I of four. */
int32_t frameSizeOf(const Fields& fields) {
    const int32_t bitrate = bitrateOf(fields);
    const int32_t sampleRate = sampleRateOf(fields);
    if (fields.layer == kLayerI) {
        return (12000 * bitrate / sampleRate + fields.padding) * 4;
    }
    const int32_t slots = samplesPerFrameOf(fields) / 8 * 1000;
    return slots * bitrate / sampleRate + fields.padding;
}

bool agree(uint32_t header, uint32_t reference) {
    return ((header ^ reference) & kAgreementMask) == 0;
}

void store(int32_t* output, int32_t value) {
    if (output != nullptr) {
        *output = value;
    }
}

/** The frame's size; 0 if the header is invalid. */
uint64_t frameSizeAt(ByteView data, size_t position) {
    uint64_t frameSize = 0;
    (void)GetMPEGAudioFrameSize(data.u32be(position), &frameSize);
    return frameSize;
}

/** The header that findMP3Header tries to confirm. */
struct Candidate {
    uint64_t offset;
    uint32_t header = 0;
    uint64_t frameSize = 0;
    /** No valid header follows, so the search need not be repeated. */
    bool isLast = false;
};

/**
 * Moves the candidate to the first valid header from `candidate->offset` on. If there is none, the
 * candidate becomes the last bytes that looked like a header; if there are none, it stays.
 */
void findCandidate(ByteView data, Candidate* candidate) {
    if (candidate->isLast) {
        return;
    }
    for (uint64_t position = candidate->offset; position + kHeaderSize < data.size(); ++position) {
        const ByteView here = data.from(position);
        if (!IsPlausibleMPEGAudioSync(here)) {
            continue;
        }
        *candidate = {position, here.u32be(0), frameSizeAt(here, 0)};
        ALOGI("mp3 header1: %2X %2X %2X %2X", here[0], here[1], here[2], here[3]);
        if (candidate->frameSize != 0) {
            return;
        }
    }
    candidate->isLast = true;
}

/** Whether a header that matches the candidate's follows at the end of its frame. */
bool isConfirmed(ByteView data, const Candidate& candidate, uint64_t next) {
    const ByteView second = data.from(next);
    const ByteView third = data.from(next + kConfirmationSlack);
    ALOGI("mp3 header2: %2X %2X %2X %2X", second[0], second[1], second[2], second[3]);
    ALOGI("mp3 header3: %2X %2X %2X %2X", third[0], third[1], third[2], third[3]);
    return agree(second.u32be(0), candidate.header) || agree(third.u32be(0), candidate.header);
}

bool findConfirmedHeader(ByteView data, uint64_t* offset, uint32_t* header) {
    Candidate candidate{*offset};
    while (candidate.offset + kHeaderSize < data.size()) {
        findCandidate(data, &candidate);
        *offset = candidate.offset;
        ALOGI("mp3 frame size=%d, frame header offset=%d,buff size=%d",
              static_cast<int>(candidate.frameSize), static_cast<int>(candidate.offset),
              static_cast<int>(data.size()));
        if (candidate.frameSize == 0) {
            return false;
        }
        const uint64_t next = candidate.offset + candidate.frameSize;
        if (next >= data.size()) {
            ALOGI("frame overflow buffer");
            return false;
        }
        *offset = next;
        if (isConfirmed(data, candidate, next)) {
            *header = candidate.header;
            return true;
        }
        candidate.offset = frameSizeAt(data, next) != 0 ? next : candidate.offset + 1;
        *offset = candidate.offset;
    }
    return false;
}

}  // namespace

bool IsPlausibleMPEGAudioSync(ByteView data) {
    if (data.size() < 3) {
        return false;
    }
    const Fields fields(data.u32be(0));
    return (data.u32be(0) & kSyncMask) == kSyncMask && fields.version != kReservedVersion &&
           fields.layer != kReservedLayer && fields.bitrateIndex != kBadBitrate &&
           fields.rateIndex != kReservedRate;
}

bool GetMPEGAudioFrameSize(uint32_t header, uint64_t* frameSize, int32_t* sampleRate,
                           int32_t* channels, int32_t* bitrate, int32_t* samplesPerFrame) {
    *frameSize = 0;
    store(sampleRate, 0);
    store(channels, 0);
    store(bitrate, 0);
    store(samplesPerFrame, 1152);
    if (!isDecodable(header)) {
        return false;
    }
    const Fields fields(header);
    *frameSize = static_cast<uint64_t>(frameSizeOf(fields));
    store(sampleRate, sampleRateOf(fields));
    store(channels, fields.channelMode == kSingleChannel ? 1 : 2);
    store(bitrate, bitrateOf(fields));
    store(samplesPerFrame, samplesPerFrameOf(fields));
    return true;
}

int32_t FindMatchingMPEGAudioHeader(ByteView data, int32_t length, uint32_t reference) {
    const int64_t last = int64_t{length} - static_cast<int64_t>(kHeaderSize);
    for (int32_t position = 0; position <= last; ++position) {
        if (agree(data.u32be(static_cast<size_t>(position)), reference)) {
            return position;
        }
    }
    return -1;
}

uint32_t findMP3Header(ByteView data, uint64_t* offset, uint32_t* header) {
    if (findConfirmedHeader(data, offset, header)) {
        return kMP3HeaderFound;
    }
    ALOGI("findMP3Header():size:%d,Not found MP3Headr,buf:%2x %2x %2x %2x %2x %2x %2x %2x",
          static_cast<int>(data.size()), data[0], data[1], data[2], data[3], data[4], data[5],
          data[6], data[7]);
    return kMP3HeaderNotFound;
}

}  // namespace android::ogm
