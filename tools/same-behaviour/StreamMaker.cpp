// SPDX-License-Identifier: Apache-2.0
#include "StreamMaker.h"

#include <algorithm>
#include <string_view>

#include "ElementaryStreams.h"
#include "OgmFile.h"
#include "OgmStreamHeaders.h"

namespace android::ogm::trace {

namespace {

using test::append;
using test::joined;

constexpr std::string_view kMpeg4 = "FMP4";
constexpr std::string_view kMpeg2 = "mpg2";
constexpr std::string_view kVideoCodecs[] = {"FMP4", "FMP4", "mpg2", "mpg2", "H264",
                                             "DIVX", "DIV3", "WMV3", "VP8F", "MJPG"};
constexpr std::string_view kMpegAudio = "0055";
constexpr std::string_view kMpegAudioLayer1 = "0050";
constexpr std::string_view kAc3 = "2000";
constexpr std::string_view kDts = "2001";
constexpr std::string_view kAudioCodecs[] = {"0055", "0055", "0055", "0050", "2000", "2000",
                                             "2001", "0001", "0001", "0002", "00ff", "0160"};
constexpr std::string_view kUnknownCodec = "XVID";
/** One in this many codecs is unknown. */
constexpr size_t kUnknownOneIn = 30;
constexpr uint64_t kOddTimeUnits[] = {0, 1, 333667, uint64_t{1} << 32, ~uint64_t{0}};

uint32_t seedFrom(Random* random) {
    return static_cast<uint32_t>(random->bits());
}

Bytes firstMpeg4Payload(Random* random, size_t size) {
    test::VideoObjectLayer layer;
    layer.width = static_cast<uint32_t>(random->between(16, 720));
    layer.fixedVopRate = random->oneIn(4);
    layer.controlParameters = random->oneIn(4);
    if (random->oneIn(60)) {
        layer.clearMarker = random->below(4);
    }
    Bytes payload;
    if (random->oneIn(2)) {
        append(payload, joined({test::visualObjectSequence(), test::visualObject()}));
    }
    if (!random->oneIn(8)) {
        append(payload, layer.bytes());
    }
    if (random->oneIn(3)) {
        append(payload, test::groupOfVop());
    }
    append(payload, test::videoObjectPlane(0, size, seedFrom(random)));
    return payload;
}

Bytes videoPayload(Random* random, std::string_view codec, bool first, size_t size) {
    if (codec == kMpeg4) {
        return first ? firstMpeg4Payload(random, size)
                     : test::videoObjectPlane(static_cast<uint32_t>(random->below(4)), size,
                                              seedFrom(random));
    }
    if (codec == kMpeg2) {
        return test::mpeg2Picture(static_cast<uint32_t>(random->between(1, 4)), size,
                                  seedFrom(random));
    }
    return test::pattern(size, seedFrom(random));
}

size_t packetSize(Random* random, const StreamSize& size) {
    constexpr size_t kSmall = 60;
    const size_t most = std::max(random->oneIn(3) ? kSmall : size.maxPacket, kSmall);
    return random->between(12, most);
}

Bytes videoPacket(Random* random, const Bytes& payload, bool isSync) {
    constexpr uint8_t kTwoLengthBytes = 0x80;
    const uint8_t flags = isSync ? test::kSyncPacket : test::kPlainPacket;
    if (random->oneIn(12)) {
        return test::dataPacket(flags | kTwoLengthBytes, {random->byte(), 0}, payload);
    }
    return random->oneIn(200) ? Bytes{} : test::dataPacket(flags, payload);
}

Bytes mpegAudioFrames(Random* random, size_t count, bool layer1) {
    test::MpegAudioFrame frame;
    frame.layer = layer1 ? static_cast<uint32_t>(random->between(1, 2)) : 3;
    frame.samplingRateIndex = static_cast<uint32_t>(random->below(3));
    frame.mono = random->oneIn(3);
    frame.version = random->oneIn(3) ? test::MpegVersion::kMpeg2 : test::MpegVersion::kMpeg1;
    const bool variable = random->oneIn(3);
    Bytes all;
    for (size_t i = 0; i < count; ++i) {
        if (variable) {
            frame.bitrateIndex = static_cast<uint32_t>(random->between(1, 14));
        }
        frame.padding = random->oneIn(3);
        frame.seed = seedFrom(random);
        append(all, frame.bytes());
        if (random->oneIn(30)) {
            append(all, test::pattern(random->below(300), frame.seed));
        }
    }
    return all;
}

Bytes ac3Frames(Random* random, size_t count) {
    test::Ac3Frame frame;
    frame.sampleRateCode = static_cast<uint32_t>(random->below(3));
    frame.frameSizeCode = static_cast<uint32_t>(random->below(30));
    test::EnhancedAc3Frame enhanced;
    enhanced.length = 2 * random->between(32, 600);
    const bool isEnhanced = random->oneIn(4);
    Bytes all;
    for (size_t i = 0; i < count; ++i) {
        frame.seed = enhanced.seed = seedFrom(random);
        append(all, isEnhanced ? enhanced.bytes() : frame.bytes());
        if (random->oneIn(25)) {
            append(all, test::pattern(random->below(200), frame.seed));
        }
    }
    return all;
}

Bytes dtsFrames(Random* random, size_t count) {
    constexpr test::DtsForm kForms[] = {test::DtsForm::kCore16BitBigEndian,
                                        test::DtsForm::kCore14BitBigEndian,
                                        test::DtsForm::kHdSubstream};
    const test::DtsForm form = random->oneOf(kForms);
    Bytes all;
    for (size_t i = 0; i < count; ++i) {
        append(all, test::dtsFrame(random->oneIn(10) ? random->oneOf(kForms) : form,
                                   random->between(20, 1500), seedFrom(random)));
    }
    return all;
}

/** Returns the frames of a re-framed codec; empty for the others. */
Bytes audioFrames(Random* random, std::string_view codec, size_t count) {
    if (codec == kMpegAudio || codec == kMpegAudioLayer1) {
        return mpegAudioFrames(random, count, codec == kMpegAudioLayer1);
    }
    if (codec == kAc3) {
        return ac3Frames(random, count);
    }
    return codec == kDts ? dtsFrames(random, count) : Bytes{};
}

/** Returns the stream in packets that do not respect its frames. */
std::vector<Bytes> inPackets(Random* random, const Bytes& stream, const StreamSize& size) {
    const uint8_t headerByte = random->oneIn(4) ? random->byte() : test::kPlainPacket;
    std::vector<Bytes> packets;
    for (size_t begin = 0; begin < stream.size();) {
        const size_t length = random->oneIn(20) ? random->below(8) + 1 : packetSize(random, size);
        packets.push_back(
                test::audioPacket(test::head(test::tail(stream, begin), length), headerByte));
        begin += length;
    }
    return packets;
}

std::vector<Bytes> plainAudioPackets(Random* random, const StreamSize& size) {
    std::vector<Bytes> packets;
    for (size_t i = 0; i < size.packets; ++i) {
        const Bytes payload = test::pattern(packetSize(random, size), seedFrom(random));
        const uint8_t headerByte = random->oneIn(10) ? random->byte() : test::kPlainPacket;
        packets.push_back(random->oneIn(100) ? Bytes{headerByte}
                                             : test::audioPacket(payload, headerByte));
    }
    return packets;
}

}  // namespace

Stream videoStream(Random* random, uint32_t serialNo, const StreamSize& size) {
    test::VideoHeader header;
    const std::string_view codec =
            random->oneIn(kUnknownOneIn) ? kUnknownCodec : random->oneOf(kVideoCodecs);
    header.subtype = codec;
    header.timeUnit = random->oneIn(15) ? random->oneOf(kOddTimeUnits) : 400000;
    header.bitsPerSample = random->oneIn(4) ? 8 : 0;
    Stream stream{serialNo, header.bytes(), {}, 1};
    const size_t syncDistance = random->between(1, 30);
    for (size_t i = 0; i < size.packets; ++i) {
        const Bytes payload = videoPayload(random, codec, i == 0, packetSize(random, size));
        stream.packets.push_back(videoPacket(random, payload, i % syncDistance == 0));
    }
    return stream;
}

Stream audioStream(Random* random, uint32_t serialNo, const StreamSize& size) {
    constexpr uint64_t kRates[] = {8000, 22050, 44100, 48000};
    constexpr uint16_t kBits[] = {8, 16, 24};
    test::AudioHeader header;
    const std::string_view codec =
            random->oneIn(kUnknownOneIn) ? kUnknownCodec : random->oneOf(kAudioCodecs);
    header.subtype = codec;
    header.samplesPerUnit = random->oneOf(kRates);
    header.timeUnit = random->oneIn(15) ? random->oneOf(kOddTimeUnits) : 10000000;
    header.bitsPerSample = random->oneOf(kBits);
    header.channels = static_cast<uint16_t>(random->between(1, 2));
    Stream stream{serialNo, header.bytes(), {}, random->between(100, 2500)};
    const Bytes frames = audioFrames(random, codec, size.packets);
    stream.packets =
            frames.empty() ? plainAudioPackets(random, size) : inPackets(random, frames, size);
    return stream;
}

Stream otherStream(Random* random, uint32_t serialNo, const StreamSize& size) {
    Stream stream{serialNo, {}, {}, 1};
    switch (random->below(3)) {
        case 0:
            stream.header = test::vorbisIdentificationHeader();
            break;
        case 1:
            stream.header = test::textHeader();
            break;
        default:
            stream.header = test::theoraIdentificationHeader();
            break;
    }
    for (size_t i = 0; i < size.packets / 4; ++i) {
        stream.packets.push_back(test::pattern(packetSize(random, size), seedFrom(random)));
    }
    return stream;
}

}  // namespace android::ogm::trace
