// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"

/** The command with files that tests build with faults. */
namespace ogmprobe::test {
namespace {

using namespace android::ogm::test;
using nlohmann::json;
using testing::HasSubstr;

constexpr uint32_t kStream = 2;
/** First byte of an audio packet for which the plug-in and the format have the same header size. */
constexpr uint8_t kPlainAudio = 0x80;
constexpr size_t kFrames = 60;

/** A device with decoders for everything. */
constexpr const char* kDolbyDevice = R"(<MediaCodecs><Decoders>
    <MediaCodec name="c2.x.mpeg4" type="video/mp4v-es"/>
    <MediaCodec name="c2.x.raw" type="audio/raw"/>
    <MediaCodec name="c2.x.aac" type="audio/mp4a-latm"/>
    <MediaCodec name="c2.x.ac3"><Type name="audio/ac3"/><Type name="audio/eac3"/></MediaCodec>
    </Decoders></MediaCodecs>)";

template <typename Frame>
std::vector<Bytes> framesLike(Frame frame) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= kFrames; ++i) {
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    return frames;
}

/** An audio stream with one packet per page. */
Bytes audioFile(const std::string& tag, uint64_t rate, const std::vector<Bytes>& packets,
                uint64_t samples) {
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = rate;
    header.channels = 1;
    OgmFile file;
    file.addHeader(kStream, header);
    for (size_t i = 0; i < packets.size(); ++i) {
        file.addData(kStream, (i + 1) * samples, audioPacket(packets[i], kPlainAudio));
    }
    return file.bytes();
}

/** The member of "tracks" with this number, for the device above. */
json trackOf(const Bytes& bytes, size_t track = 0) {
    const ExplainedFile file(bytes);
    const TemporaryFolder folder;
    const auto result = runProbe({"check", "--json", "--codecs",
                                  folder.write("media_codecs.xml", kDolbyDevice), file.path()});
    return json::parse(result.out).at("files").at(0).at("tracks").at(track);
}

const json& reasonOf(const json& track, const std::string& id) {
    static const json kNone;
    for (const auto& reason : track["reasons"]) {
        if (reason["id"] == id) {
            return reason;
        }
    }
    return kNone;
}

TEST(CheckStreamsTest, Ac3At44100HertzLosesFramesAndHasThemOfAWrongSize) {
    Ac3Frame frame;
    frame.sampleRateCode = 1;
    const json track = trackOf(audioFile("2000", 44100, framesLike(frame), 1536));
    const json& lost = reasonOf(track, "frames-lost");
    ASSERT_FALSE(lost.is_null()) << track.dump(1);
    EXPECT_GE(lost["value"], 28);
    EXPECT_EQ(lost["subject"], "AC-3 at 44100 Hz");
    EXPECT_FALSE(reasonOf(track, "ac3-frame-size").is_null());
    EXPECT_EQ(track["verdict"], "plays with faults");
    EXPECT_EQ(track["decoder"], "c2.x.ac3");
}

TEST(CheckStreamsTest, Ac3At48000HertzPlays) {
    const json track = trackOf(audioFile("2000", 48000, framesLike(Ac3Frame()), 1536));
    EXPECT_EQ(track["verdict"], "plays") << track.dump(1);
}

TEST(CheckStreamsTest, EnhancedAc3ThatIsCalledAc3DoesNotPlay) {
    const json track = trackOf(audioFile("2000", 48000, framesLike(EnhancedAc3Frame()), 1536));
    EXPECT_THAT(reasonOf(track, "eac3-as-ac3")["text"].get<std::string>(),
                HasSubstr("60 of 60 frames"));
    EXPECT_EQ(track["verdict"], "does not play");
}

TEST(CheckStreamsTest, AacWithoutConfigurationDoesNotPlay) {
    std::vector<Bytes> packets;
    for (uint32_t i = 1; i <= kFrames; ++i) {
        packets.push_back(pattern(50, i));
    }
    const json track = trackOf(audioFile("00FF", 48000, packets, 1024));
    EXPECT_EQ(reasonOf(track, "configuration-missing")["subject"], "AAC");
    EXPECT_EQ(track["verdict"], "does not play");
}

/** The file, with granule positions of its audio that rise faster by this fraction. */
Bytes withFasterSound(Bytes bytes, double part) {
    constexpr size_t kGranule = 6;
    constexpr size_t kSerial = 14;
    for (const size_t page : pageOffsets(bytes)) {
        uint64_t granule = 0;
        for (size_t i = sizeof(granule); i-- > 0;) {
            granule = granule << 8 | bytes[page + kGranule + i];
        }
        if (bytes[page + kSerial] == 1) {
            bytes = withGranule(std::move(bytes), page,
                                static_cast<uint64_t>(static_cast<double>(granule) * part));
        }
    }
    return bytes;
}

TEST(CheckStreamsTest, SoundWhosePagesRunAwayFromItsSamplesIsAFault) {
    const Bytes whole = sampleBytes("mpeg4_pcm8.ogm");
    EXPECT_TRUE(reasonOf(trackOf(whole, 1), "audio-drifts").is_null());
    const json drift = reasonOf(trackOf(withFasterSound(whole, 1.03), 1), "audio-drifts");
    ASSERT_FALSE(drift.is_null());
    // 3 percent of 6.2 seconds.
    EXPECT_NEAR(drift["value"].get<double>(), 185'000, 5'000);
    EXPECT_EQ(drift["limit"], 80'000);
    EXPECT_TRUE(reasonOf(trackOf(withFasterSound(whole, 1.005), 1), "audio-drifts").is_null());
}

}  // namespace
}  // namespace ogmprobe::test
