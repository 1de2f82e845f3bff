// SPDX-License-Identifier: Apache-2.0
#include "commands/StreamWriter.h"

#include <algorithm>
#include <limits>

#include "codecs/Esds.h"
#include "codecs/LittleEndian.h"
#include "codecs/Mpeg4Video.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kWavHeaderSize = 44;
// What the RIFF size does not count: its own chunk's name and size.
constexpr uint64_t kRiffPreamble = 8;
constexpr uint32_t kFormatChunkSize = 16;
constexpr uint16_t kPcmFormat = 1;
constexpr uint64_t kWavSampleBits = 16;

constexpr uint16_t kIvfHeaderSize = 32;

/** The bytes of one sample of all channels. */
uint64_t blockAlign(uint16_t channels) {
    return channels * (kWavSampleBits / 8);
}

uint64_t fitting32(uint64_t value) {
    return std::min<uint64_t>(value, std::numeric_limits<uint32_t>::max());
}

class RawWriter : public StreamWriter {
  public:
    using StreamWriter::StreamWriter;

    void write(const Packet& packet) override { file().append(packet.bytes); }
};

/**
 * A decoder needs the video object layer before the first picture. Most streams repeat it there;
 * where the muxer has moved it out, the track's ESDS is where the extractor kept it.
 */
class Mpeg4Writer : public StreamWriter {
  public:
    Mpeg4Writer(NewFile& file, const TrackDescription& track) : StreamWriter(file) {
        const auto es = track.esds ? parseEsDescriptor(*track.esds) : std::nullopt;
        if (es && es->decoderConfig && es->decoderConfig->decoderSpecificInfo) {
            mConfiguration = *es->decoderConfig->decoderSpecificInfo;
        }
    }

    void write(const Packet& packet) override {
        if (mAtStart && videoObjectLayer(packet.bytes).empty()) {
            file().append(mConfiguration);
        }
        mAtStart = false;
        file().append(packet.bytes);
    }

  private:
    std::vector<uint8_t> mConfiguration;
    bool mAtStart = true;
};

class WavWriter : public StreamWriter {
  public:
    WavWriter(NewFile& file, const TrackDescription& track)
        : StreamWriter(file),
          mSampleRate(static_cast<uint32_t>(track.sampleRate.value_or(0))),
          mChannels(static_cast<uint16_t>(track.channelCount.value_or(0))) {
        file.append(wavHeader(mSampleRate, mChannels, 0));
    }

    void write(const Packet& packet) override {
        std::span<const uint8_t> bytes = packet.bytes;
        // What is left of an Ogg comment header may come first. It must not shift the samples that
        // follow, or all of them would be noise.
        if (file().size() == kWavHeaderSize && mChannels != 0) {
            bytes = bytes.first(bytes.size() - bytes.size() % blockAlign(mChannels));
        }
        file().append(bytes);
    }

    void finish() override {
        const uint64_t dataBytes = file().size() - kWavHeaderSize;
        // Chunks begin at even places; the filler is not counted.
        if (dataBytes % 2 != 0) {
            file().append(std::vector<uint8_t>{0});
        }
        file().overwriteStart(wavHeader(mSampleRate, mChannels, dataBytes));
    }

  private:
    const uint32_t mSampleRate;
    const uint16_t mChannels;
};

/** IVF keeps the frame boundaries, which the VP8 bit stream itself does not tell. */
class IvfWriter : public StreamWriter {
  public:
    IvfWriter(NewFile& file, const TrackDescription& track) : StreamWriter(file), mTrack(track) {
        file.append(header());
    }

    void write(const Packet& packet) override {
        LittleEndian frame;
        frame.u32(packet.bytes.size()).u64(static_cast<uint64_t>(packet.timeUs));
        file().append(frame.bytes());
        file().append(packet.bytes);
        ++mFrames;
    }

    void finish() override { file().overwriteStart(header()); }

  private:
    std::vector<uint8_t> header() const {
        LittleEndian header;
        header.text("DKIF").u16(0).u16(kIvfHeaderSize).text("VP80");
        header.u16(static_cast<uint64_t>(mTrack.width.value_or(0)));
        header.u16(static_cast<uint64_t>(mTrack.height.value_or(0)));
        header.u32(kUsPerSecond).u32(1).u32(mFrames).u32(0);
        return header.bytes();
    }

    const TrackDescription mTrack;
    uint64_t mFrames = 0;
};

}  // namespace

std::unique_ptr<StreamWriter> makeStreamWriter(const TrackDescription& track, NewFile& file) {
    switch (track.codec.packaging) {
        case Packaging::kRaw:
            break;
        case Packaging::kMpeg4:
            return std::make_unique<Mpeg4Writer>(file, track);
        case Packaging::kWav:
            return std::make_unique<WavWriter>(file, track);
        case Packaging::kIvf:
            return std::make_unique<IvfWriter>(file, track);
    }
    return std::make_unique<RawWriter>(file);
}

std::vector<uint8_t> wavHeader(uint32_t sampleRate, uint16_t channels, uint64_t dataBytes) {
    const uint64_t frameBytes = blockAlign(channels);
    const uint64_t padded = dataBytes + dataBytes % 2;
    LittleEndian header;
    header.text("RIFF").u32(fitting32(kWavHeaderSize - kRiffPreamble + padded)).text("WAVE");
    header.text("fmt ").u32(kFormatChunkSize).u16(kPcmFormat).u16(channels).u32(sampleRate);
    header.u32(fitting32(sampleRate * frameBytes)).u16(frameBytes).u16(kWavSampleBits);
    header.text("data").u32(fitting32(dataBytes));
    return header.bytes();
}

}  // namespace ogmprobe
