// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"

namespace ogmprobe::test::explain_formats_test {
namespace {

using namespace android::ogm::test;
using testing::EndsWith;
using testing::HasSubstr;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
constexpr uint8_t kUsualAudio = 0x80;

void addVideo(OgmFile& file, int count) {
    for (int i = 1; i <= count; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
    }
}

OgmFile videoFile(const VideoHeader& header) {
    OgmFile file;
    file.addHeader(kVideo, header);
    addVideo(file, 30);
    return file;
}

OgmFile audioFile(const AudioHeader& header, const std::vector<Bytes>& packets) {
    OgmFile file;
    file.addHeader(kAudio, header);
    for (size_t i = 0; i < packets.size(); ++i) {
        file.addData(kAudio, (i + 1) * 1024, audioPacket(packets[i], kUsualAudio));
    }
    return file;
}

AudioHeader audioHeader(const std::string& tag) {
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = 48000;
    header.channels = 2;
    return header;
}

TEST(ExplainFormats, AFrameRateWithoutItsFractionIsReported) {
    ExplainedFile(sampleBytes("mpeg4_2997_ac3.ogm"))
            .expectOne("frame-rate-rounded",
                       "Track 0 has 29.97 frames a second, but its format says 29: the fraction is "
                       "cut off.",
                       "");
    ExplainedFile(sampleBytes("mjpeg.ogm")).expectNone("frame-rate-rounded");
}

TEST(ExplainFormats, AFrameRateThatWrapsIsReported) {
    VideoHeader header;
    header.samplesPerUnit = 1000;
    header.timeUnit = 400'000'000;
    const auto found = ExplainedFile(videoFile(header).bytes()).findings("frame-rate-wrong");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                testing::StartsWith("Track 0 has 25 frames a second, but its format says "));
}

TEST(ExplainFormats, TheBitsOfAnotherStreamAreReported) {
    OgmFile file;
    AudioHeader audio;
    audio.bitsPerSample = 16;
    file.addHeader(kAudio, audio);
    VideoHeader video;
    video.bitsPerSample = 24;
    file.addHeader(kVideo, video);
    for (int i = 1; i <= 30; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
        file.addData(kAudio, i * 320, audioPacket(pattern(60, i), kUsualAudio));
    }
    const ExplainedFile explained(file.bytes());
    explained.expectOne("bits-of-another-stream",
                        "Track 0 has 16 bits a sample, but is returned as if it had 24: those of "
                        "the stream header accepted last apply to all tracks.",
                        "");
    explained.expectNone("packets-missing");
    ExplainedFile(sampleBytes("mpeg4_pcm8.ogm")).expectNone("bits-of-another-stream");
}

TEST(ExplainFormats, EnhancedAc3IsReported) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= 30; ++i) {
        EnhancedAc3Frame frame;
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    ExplainedFile(audioFile(audioHeader("2000"), frames).bytes())
            .expectOne("eac3-as-ac3",
                       "30 of 30 frames of track 0 are E-AC-3, but its MIME type is audio/ac3, and "
                       "a decoder of AC-3 cannot play them.",
                       "");
    ExplainedFile(sampleBytes("mpeg2_ac3.ogm")).expectNone("eac3-as-ac3");
}

TEST(ExplainFormats, ASubstreamAddsToTheBitrateOfEnhancedAc3AndNotToItsTime) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= 30; ++i) {
        EnhancedAc3Frame independent;
        independent.seed = i;
        EnhancedAc3Frame dependent = independent;
        dependent.streamType = 1;
        frames.push_back(joined({independent.bytes(), dependent.bytes()}));
    }
    const ExplainedFile file(audioFile(audioHeader("2000"), frames).bytes());
    EXPECT_THAT(runProbe({"info", file.path()}).out,
                HasSubstr(" audio: E-AC-3, 48000 Hz, 6 channels, 128 kbit/s constant, 3/2.1, "));
}

TEST(ExplainFormats, AacWithoutAConfigurationIsReported) {
    std::vector<Bytes> packets;
    for (uint32_t i = 1; i <= 30; ++i) {
        packets.push_back(pattern(50, i));
    }
    ExplainedFile(audioFile(audioHeader("00FF"), packets).bytes())
            .expectOne("aac-without-configuration",
                       "Track 0 is AAC without a codec configuration: its format has no ESDS, and "
                       "a decoder may not start.",
                       "");
}

TEST(ExplainFormats, TheObjectTypeOfVideoIsReportedAsUsual) {
    const auto finding = ExplainedFile(sampleBytes("mpeg4_b_mp3.ogm"))
                                 .expectOne("esds-object-type",
                                            "The ESDS of track 0 calls the video MPEG-4 audio "
                                            "(object type 0x40).",
                                            "");
    EXPECT_TRUE(finding["usual"]);
}

/** MPEG-4 video whose first packet begins with the given bytes. */
OgmFile mpeg4File(const Bytes& configuration) {
    VideoHeader header;
    header.subtype = "FMP4";
    header.width = 176;
    header.height = 144;
    OgmFile file;
    file.addHeader(kVideo, header);
    for (uint32_t i = 1; i <= 30; ++i) {
        const Bytes picture = videoObjectPlane(i == 1 ? 0 : 1, 60, i);
        file.addData(kVideo, i,
                     dataPacket(i == 1 ? kSyncPacket : kPlainPacket,
                                i == 1 ? joined({configuration, picture}) : picture));
    }
    return file;
}

TEST(ExplainFormats, APictureSizeThatIsNotTheHeadersIsReported) {
    VideoObjectLayer layer;
    layer.width = 352;
    layer.height = 288;
    ExplainedFile(mpeg4File(joined({visualObjectSequence(), layer.bytes()})).bytes())
            .expectOne("picture-size-differs",
                       "The pictures of track 0 have 352x288 pixels, but its format says 176x144, "
                       "as the stream header does.",
                       "");
    const ExplainedFile same(
            mpeg4File(joined({visualObjectSequence(), VideoObjectLayer().bytes()})).bytes());
    same.expectNone("picture-size-differs");
    same.expectNone("esds-leading-bytes");
}

TEST(ExplainFormats, APacketHeaderInTheConfigurationIsReported) {
    ExplainedFile(mpeg4File(VideoObjectLayer().bytes()).bytes())
            .expectOne("esds-leading-bytes",
                       "The codec configuration of track 0 begins with a byte of the packet header "
                       "before its first start code.",
                       "");
}

TEST(ExplainFormats, ARateThatIsNotTheHeadersIsReported) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= 30; ++i) {
        MpegAudioFrame frame;
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    ExplainedFile(audioFile(audioHeader("0055"), frames).bytes())
            .expectOne("audio-format-differs",
                       "The frames of track 0 have 44100 Hz and 2 channels, but its format says "
                       "48000 Hz and 2 channels, as the stream header does.",
                       "");
    ExplainedFile(sampleBytes("mpeg4_b_mp3.ogm")).expectNone("audio-format-differs");
}

TEST(ExplainFormats, TheTypeOfAFileWithoutVideoIsReportedAsUsual) {
    const auto found =
            ExplainedFile(
                    audioFile(audioHeader("00FF"), std::vector<Bytes>(20, Bytes(50, 1))).bytes())
                    .findings("container-type-without-video");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0]["usual"]);
}

TEST(ExplainFormats, AnErrorLineWithoutAnErrorIsReportedAsUsual) {
    const auto found =
            ExplainedFile(sampleBytes("mpeg4_b_mp3.ogm")).findings("error-line-without-error");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0]["usual"]);
    EXPECT_THAT(found[0]["log"]["text"].get<std::string>(), HasSubstr("mDequeueMpegAudioOgm"));
}

/** Returns the text about the death that the file causes. */
std::string endOf(const Bytes& bytes, const std::vector<std::string>& options = {}) {
    const auto found = ExplainedFile(bytes).findings("extractor-ended", options);
    return found.empty() ? "" : found[0]["text"].get<std::string>();
}

std::string endOfLayer(const VideoObjectLayer& layer) {
    return endOf(mpeg4File(joined({visualObjectSequence(), layer.bytes()})).bytes());
}

TEST(ExplainFormats, TheCauseOfADeathIsNamed) {
    VideoObjectLayer layer;
    layer.clearMarker = 0;
    EXPECT_THAT(endOfLayer(layer), HasSubstr(" A marker bit of a video object layer header is 0."));
    layer = {};
    layer.shape = 1;
    EXPECT_THAT(endOfLayer(layer), HasSubstr("is not of rectangular pictures."));
    layer = {};
    layer.objectType = 0x21;
    EXPECT_THAT(endOfLayer(layer), HasSubstr("is of fine granularity scalable video."));
    layer = {};
    layer.fixedVopRate = true;
    layer.timeIncrementResolution = 0;
    EXPECT_THAT(endOfLayer(layer), HasSubstr("has a fixed rate and a resolution of 0."));
    EXPECT_THAT(endOf(mpeg4File(joined({visualObjectSequence(), VideoObjectLayer().bytes(),
                                        visualObject(), Bytes(17000, 1)}))
                              .bytes()),
                HasSubstr("There are more than 16361 bytes"));
}

TEST(ExplainFormats, AGranulePositionThatEndsTheExtractorIsNamed) {
    // At 1 Hz granule positions count seconds.
    AudioHeader header = audioHeader("0055");
    header.samplesPerUnit = 1;
    OgmFile file;
    file.addHeader(kAudio, header);
    for (uint32_t i = 1; i <= 30; ++i) {
        MpegAudioFrame frame;
        frame.seed = i;
        file.addData(kAudio, 10'000'000'000'000 + i, audioPacket(frame.bytes(), kUsualAudio));
    }
    EXPECT_THAT(endOf(file.bytes()), HasSubstr("An MPEG audio frame has a negative time"));
}

TEST(ExplainFormats, AGranulePositionThatEndsTheCuttingOfDtsIsNamed) {
    AudioHeader header = audioHeader("2001");
    header.samplesPerUnit = 1;
    OgmFile file;
    file.addHeader(kAudio, header);
    for (uint32_t i = 1; i <= 30; ++i) {
        file.addData(kAudio, 10'000'000'000'000 + i,
                     audioPacket(dtsFrame(DtsForm::kCore16BitBigEndian, 100, i), kUsualAudio));
    }
    EXPECT_THAT(endOf(file.bytes()), HasSubstr(" A DTS frame has a negative time"));
}

TEST(ExplainFormats, HeadersThatAreCutOffAreNamedAsTheEnd) {
    const Bytes layer = VideoObjectLayer().bytes();
    EXPECT_THAT(endOf(mpeg4File(joined({visualObjectSequence(), head(layer, 6)})).bytes()),
                HasSubstr(" A video object layer header, or the beginning of an AC-3 frame, is cut "
                          "off."));
    const std::vector<Bytes> packets(30,
                                     joined({Ac3Frame().bytes(), pattern(20, 1), {0x0b, 0x77}}));
    EXPECT_THAT(endOf(audioFile(audioHeader("2000"), packets).bytes()),
                HasSubstr(" A video object layer header, or the beginning of an AC-3 frame, is cut "
                          "off."));
}

TEST(ExplainFormats, AFileThatBeginsWithADataPageIsNamed) {
    OgmFile file;
    file.addData(kVideo, 1, dataPacket(kSyncPacket, pattern(50, 1)));
    file.addHeader(kVideo, VideoHeader());
    const auto document = ExplainedFile(file.bytes()).document({"--timeout", "0.3"});
    EXPECT_THAT(document.dump(), HasSubstr("The file begins with a data page, and offset 0 means "
                                           "an unknown place"));
}

TEST(ExplainFormats, ASearchForAStartCodeWithoutEndIsNamed) {
    VideoHeader header;
    header.subtype = "FMP4";
    OgmFile file;
    file.addHeader(kVideo, header);
    file.addData(kVideo, 1, dataPacket(kSyncPacket, Bytes(400, 5)));
    file.addData(kVideo, 2, dataPacket(kSyncPacket, Bytes(400, 5)));
    const auto document = ExplainedFile(file.bytes()).document({"--timeout", "0.3"});
    EXPECT_THAT(document["findings"].back()["text"].get<std::string>(),
                HasSubstr(" The search for a start code of MPEG-4 video never ends if there are "
                          "more than 257 bytes and none of the first 256 begins one."));
}

TEST(ExplainFormats, AFileWithoutADataPageIsNamed) {
    OgmFile file;
    file.addHeader(9, textHeader());
    file.addHeader(kVideo, VideoHeader());
    const auto document = ExplainedFile(file.bytes()).document({"--timeout", "0.3"});
    ASSERT_FALSE(document["findings"].empty());
    EXPECT_THAT(document.dump(), HasSubstr("No page holds data of a track, so the header pages are "
                                           "read as such again and again."));
}

TEST(ExplainFormats, TheBuffersOfWidenedPcmAreReportedAsUsual) {
    const auto finding =
            ExplainedFile(sampleBytes("mpeg4_pcm8.ogm"))
                    .expectOne("pcm8-time-alone",
                               "The 8-bit samples of track 1 are returned with 16 bits, "
                               "in buffers that have only a time: other buffers also "
                               "have a target time and a sync flag.",
                               "OGA_AUDIO_PCM,mBitsPerSample == 8");
    EXPECT_TRUE(finding["usual"]);
    ExplainedFile(sampleBytes("divx3_pcm16.ogm")).expectNone("pcm8-time-alone");
}

TEST(ExplainFormats, TheCostOfJunkIsReportedAsUsual) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    addVideo(file, 10);
    file.addJunk(50);
    addVideo(file, 10);
    const ExplainedFile explained(file.bytes());
    EXPECT_EQ(explained.findings("junk-read-twice").size(), 1U);
    EXPECT_EQ(explained.findings("junk-look-up-early").size(), 1U);
}

TEST(ExplainFormats, AnAc3FrameOfNoSizeIsNamed) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= 12; ++i) {
        Ac3Frame frame;
        frame.frameSizeCode = 37;
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    // The limit of memory ends it first, where there is one.
    EXPECT_THAT(
            endOf(audioFile(audioHeader("2000"), frames).bytes(), {"--timeout", "3"}),
            HasSubstr(" An AC-3 frame has a size code (37) for which the plug-in's table says 0 "
                      "bytes: it is returned again and again."));
}

}  // namespace
}  // namespace ogmprobe::test::explain_formats_test
