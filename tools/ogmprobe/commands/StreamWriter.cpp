// SPDX-License-Identifier: Apache-2.0
#include "commands/StreamWriter.h"

#include <algorithm>
#include <array>
#include <limits>

#include "codecs/Esds.h"
#include "codecs/LittleEndian.h"
#include "codecs/Mpeg4Video.h"
#include "commands/AviWriter.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kWavHeaderSize = 44;
// The RIFF size does not include its own chunk's name and size.
constexpr uint64_t kRiffPreamble = 8;
constexpr uint32_t kFormatChunkSize = 16;
constexpr uint16_t kPcmFormat = 1;
constexpr uint64_t kWavSampleBits = 16;

constexpr uint16_t kIvfHeaderSize = 32;

/** Returns the bytes of one sample of all channels. */
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
 * A decoder needs the video object layer before the first picture. Most streams repeat it there. If
 * the muxer removed it, the track's ESDS has it.
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
        // Players take the largest size as "to the end".
        file.append(wavHeader(mSampleRate, mChannels,
                              file.canOverwriteStart() ? 0 : std::numeric_limits<uint32_t>::max()));
    }

    void write(const Packet& packet) override {
        std::span<const uint8_t> bytes = packet.bytes;
        // The rest of an Ogg comment header may come first. It must not shift the following
        // samples, which would turn all of them into noise.
        if (file().size() == kWavHeaderSize && mChannels != 0) {
            bytes = bytes.first(bytes.size() - bytes.size() % blockAlign(mChannels));
        }
        file().append(bytes);
    }

    void finish() override {
        const uint64_t dataBytes = file().size() - kWavHeaderSize;
        // Chunks begin at even offsets; the filler byte is not counted.
        if (dataBytes % 2 != 0) {
            file().append(std::vector<uint8_t>{0});
        }
        file().overwriteStart(wavHeader(mSampleRate, mChannels, dataBytes));
    }

  private:
    const uint32_t mSampleRate;
    const uint16_t mChannels;
};

/**
 * The header is known after the first packet, which consists of whole blocks and so shows their
 * size.
 */
class AdpcmWriter : public StreamWriter {
  public:
    AdpcmWriter(NewFile& file, const TrackDescription& track)
        : StreamWriter(file),
          mSampleRate(static_cast<uint32_t>(track.sampleRate.value_or(0))),
          mChannels(static_cast<uint16_t>(track.channelCount.value_or(0))) {}

    void write(const Packet& packet) override {
        if (mBlock == 0 && !packet.bytes.empty()) {
            mBlock = adpcmBlock(mSampleRate, mChannels, packet.bytes.size());
            const uint64_t unknown = std::numeric_limits<uint32_t>::max();
            file().append(header(file().canOverwriteStart() ? 0 : unknown));
            mHeaderSize = file().size();
        }
        file().append(packet.bytes);
    }

    void finish() override {
        if (mBlock == 0) {
            return;
        }
        const uint64_t dataBytes = file().size() - mHeaderSize;
        if (dataBytes % 2 != 0) {
            file().append(std::vector<uint8_t>{0});
        }
        file().overwriteStart(header(dataBytes));
    }

  private:
    std::vector<uint8_t> header(uint64_t dataBytes) const {
        return adpcmWavHeader(mSampleRate, mChannels, mBlock, dataBytes);
    }

    const uint32_t mSampleRate;
    const uint16_t mChannels;
    uint64_t mBlock = 0;
    uint64_t mHeaderSize = 0;
};

/** IVF keeps the frame boundaries, which the VP8 bit stream itself does not mark. */
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
        case Packaging::kBare:
            break;
        case Packaging::kAvi:
            return std::make_unique<AviWriter>(file, track, track.codec.fourcc);
        case Packaging::kAdpcmWav:
            return std::make_unique<AdpcmWriter>(file, track);
        case Packaging::kMpeg4:
            return std::make_unique<Mpeg4Writer>(file, track);
        case Packaging::kWav:
            return std::make_unique<WavWriter>(file, track);
        case Packaging::kIvf:
            return std::make_unique<IvfWriter>(file, track);
    }
    return std::make_unique<RawWriter>(file);
}

uint64_t adpcmBlock(uint32_t sampleRate, uint16_t channels, uint64_t packetSize) {
    constexpr uint64_t kSmallest = 256;
    constexpr uint32_t kLowRate = 11025;
    uint64_t block = kSmallest * channels;
    for (uint32_t rate = sampleRate; rate >= 2 * kLowRate; rate /= 2) {
        block *= 2;
    }
    return block != 0 && packetSize % block == 0 ? block : packetSize;
}

std::vector<uint8_t> adpcmWavHeader(uint32_t sampleRate, uint16_t channels, uint64_t block,
                                    uint64_t dataBytes) {
    constexpr uint16_t kAdpcmFormat = 2;
    constexpr uint64_t kSampleBits = 4;
    constexpr uint64_t kBlockHead = 7;
    // Fixed by the format, in pairs.
    constexpr std::array<int16_t, 14> kCoefficients = {256, 0,   512, -256, 0,    0,   192,
                                                       64,  240, 0,   460,  -208, 392, -232};
    constexpr uint64_t kExtra = 4 + 2 * kCoefficients.size();
    constexpr uint64_t kFormatSize = 18 + kExtra;
    const uint64_t heads = kBlockHead * channels;
    const uint64_t samples =
            channels == 0 || block < heads ? 0 : (block - heads) * 2 / channels + 2;
    const uint64_t padded = dataBytes + dataBytes % 2;
    LittleEndian header;
    header.text("RIFF").u32(fitting32(4 + 8 + kFormatSize + 8 + padded)).text("WAVE");
    header.text("fmt ").u32(kFormatSize).u16(kAdpcmFormat).u16(channels).u32(sampleRate);
    header.u32(samples == 0 ? 0 : fitting32(sampleRate * block / samples));
    header.u16(block).u16(kSampleBits).u16(kExtra).u16(samples).u16(kCoefficients.size() / 2);
    for (const int16_t coefficient : kCoefficients) {
        header.u16(static_cast<uint16_t>(coefficient));
    }
    header.text("data").u32(fitting32(dataBytes));
    return header.bytes();
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
