// SPDX-License-Identifier: Apache-2.0
#include "Content.h"

#include <ogg/ogg.h>

#include <algorithm>
#include <memory>

#include "ElementaryStreams.h"
#include "OgmFile.h"
#include "OgmStreamHeaders.h"

namespace android::ogm::bench {

using test::Bytes;

namespace {

constexpr double kUsPerSecond = 1e6;
constexpr double kFrameUs = 40'000;
constexpr uint64_t kFrameUnit100ns = 400'000;
constexpr size_t kFramesPerKeyFrame = 50;
constexpr uint32_t kVideoSerialNo = 1;
constexpr uint32_t kAudioSerialNo = 2;
/** Bit 7: a length byte follows, as from ordinary writers. */
constexpr uint8_t kAudioPacketFlags = 0x80;

/**
 * Sizes that vary like those of encoded pictures: first a large one, then 0.5 to 1.5 times the
 * usual size.
 */
size_t frameSize(size_t index, size_t keyFrameSize, size_t typicalSize) {
    if (index % kFramesPerKeyFrame == 0) {
        return keyFrameSize;
    }
    const size_t percent = 50 + index * 37 % 101;
    return typicalSize * percent / 100;
}

Bytes mpeg4Frame(size_t index) {
    const size_t size = frameSize(index, 20'000, 5'000);
    const auto seed = static_cast<uint32_t>(index);
    if (index % kFramesPerKeyFrame != 0) {
        return test::dataPacket(test::kPlainPacket, test::videoObjectPlane(1, size, seed));
    }
    return test::dataPacket(
            test::kSyncPacket,
            test::joined({test::visualObjectSequence(), test::VideoObjectLayer{}.bytes(),
                          test::videoObjectPlane(0, size, seed)}));
}

Bytes h264Frame(size_t index) {
    const uint8_t flags = index % kFramesPerKeyFrame == 0 ? test::kSyncPacket : test::kPlainPacket;
    return test::dataPacket(
            flags, test::pattern(frameSize(index, 60'000, 12'000), static_cast<uint32_t>(index)));
}

ContentStream videoStream(const char* subtype, Bytes (*frame)(size_t)) {
    test::VideoHeader header;
    header.subtype = subtype;
    header.timeUnit = kFrameUnit100ns;
    ContentStream stream{kVideoSerialNo, header.bytes(), {}, kFrameUs, 1};
    for (size_t i = 0; i < 2 * kFramesPerKeyFrame; ++i) {
        stream.packets.push_back(frame(i));
    }
    return stream;
}

ContentStream audioStream(const char* tag, uint32_t sampleRate, uint64_t samplesPerPacket,
                          const std::vector<Bytes>& frames) {
    test::AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = sampleRate;
    header.channels = 2;
    ContentStream stream{kAudioSerialNo,
                         header.bytes(),
                         {},
                         kUsPerSecond * static_cast<double>(samplesPerPacket) / sampleRate,
                         samplesPerPacket};
    for (const Bytes& frame : frames) {
        stream.packets.push_back(test::audioPacket(frame, kAudioPacketFlags));
    }
    return stream;
}

constexpr uint32_t kAudioFrames = 40;

std::vector<Bytes> mp3Frames() {
    std::vector<Bytes> frames;
    for (uint32_t i = 0; i < kAudioFrames; ++i) {
        test::MpegAudioFrame frame;
        frame.padding = i % 50 != 0;  // about as often as 128 kbit/s at 44.1 kHz needs it
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    return frames;
}

std::vector<Bytes> ac3Frames() {
    std::vector<Bytes> frames;
    for (uint32_t i = 0; i < kAudioFrames; ++i) {
        test::Ac3Frame frame;
        frame.frameSizeCode = 20;  // 192 kbit/s
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    return frames;
}

constexpr uint32_t kPcmRate = 48'000;
constexpr uint64_t kPcmSamples = 960;
constexpr size_t kPcmBytesPerSample = 4;  // 16 bits, two channels

std::vector<Bytes> pcmBlocks() {
    std::vector<Bytes> blocks;
    for (uint32_t i = 0; i < kAudioFrames; ++i) {
        blocks.push_back(test::pattern(kPcmSamples * kPcmBytesPerSample, i));
    }
    return blocks;
}

/** The state of one stream while a file is written. */
class StreamWriter {
  public:
    StreamWriter(const ContentStream& stream, const Sink& sink) : mStream(stream), mSink(sink) {
        ogg_stream_init(&mState, static_cast<int>(stream.serialNo));
    }
    ~StreamWriter() { ogg_stream_clear(&mState); }
    StreamWriter(const StreamWriter&) = delete;
    StreamWriter& operator=(const StreamWriter&) = delete;

    double timeUs() const { return static_cast<double>(mCount) * mStream.packetUs; }

    /** Writes a separate page for a packet before the data. */
    void writeHeader(const Bytes& packet) {
        putPacket(packet, 0);
        flush();
    }

    void writePacket() {
        const Bytes& packet = mStream.packets[mCount % mStream.packets.size()];
        ++mCount;
        putPacket(packet, mCount * mStream.unitsPerPacket);
        ogg_page page;
        while (ogg_stream_pageout(&mState, &page) != 0) {
            putPage(page);
        }
    }

    void flush() {
        ogg_page page;
        while (ogg_stream_flush(&mState, &page) != 0) {
            putPage(page);
        }
    }

  private:
    void putPacket(const Bytes& bytes, uint64_t granule) {
        ogg_packet packet{};
        packet.packet = const_cast<unsigned char*>(bytes.data());  // libogg copies it
        packet.bytes = static_cast<long>(bytes.size());
        packet.b_o_s = mPacketNo == 0 ? 1 : 0;
        packet.packetno = mPacketNo++;
        packet.granulepos = static_cast<ogg_int64_t>(granule);
        ogg_stream_packetin(&mState, &packet);
    }

    void putPage(const ogg_page& page) {
        mSink(page.header, static_cast<size_t>(page.header_len));
        mSink(page.body, static_cast<size_t>(page.body_len));
    }

    const ContentStream& mStream;
    const Sink& mSink;
    ogg_stream_state mState{};
    ogg_int64_t mPacketNo = 0;
    uint64_t mCount = 0;
};

}  // namespace

Content mpeg4AndMp3() {
    return {"mpeg4_mp3",
            {videoStream("FMP4", mpeg4Frame), audioStream("0055", 44'100, 1152, mp3Frames())}};
}

Content mpeg4AndAc3() {
    return {"mpeg4_ac3",
            {videoStream("FMP4", mpeg4Frame), audioStream("2000", 48'000, 1536, ac3Frames())}};
}

Content h264AndPcm() {
    return {"h264_pcm",
            {videoStream("H264", h264Frame),
             audioStream("0001", kPcmRate, kPcmSamples, pcmBlocks())}};
}

void writePages(const Content& content, size_t size, const Sink& sink) {
    size_t written = 0;
    const Sink countingSink = [&](const uint8_t* data, size_t count) {
        written += count;
        sink(data, count);
    };
    std::vector<std::unique_ptr<StreamWriter>> writers;
    for (const ContentStream& stream : content.streams) {
        writers.push_back(std::make_unique<StreamWriter>(stream, countingSink));
        writers.back()->writeHeader(stream.header);
    }
    for (const auto& writer : writers) {
        writer->writeHeader(test::commentHeader());
    }
    const auto isEarlier = [](const auto& one, const auto& other) {
        return one->timeUs() < other->timeUs();
    };
    while (written < size) {
        (*std::min_element(writers.begin(), writers.end(), isEarlier))->writePacket();
    }
    for (const auto& writer : writers) {
        writer->flush();
    }
}

}  // namespace android::ogm::bench
