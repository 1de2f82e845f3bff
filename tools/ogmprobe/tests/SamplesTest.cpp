// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "Process.h"
#include "TemporaryFolder.h"

namespace ogmprobe::test::samples_test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string sample(const std::string& name) {
    return std::string(OGMPROBE_SAMPLES "/") + name;
}

json infoOf(const std::string& name) {
    const ProcessResult result = runProbe({"info", "--json", sample(name)});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return json::parse(result.out)["files"][0];
}

std::vector<json> buffersOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"packets", "--json"});
    const ProcessResult result = runProbe(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::istringstream lines(result.out);
    std::vector<json> buffers;
    for (std::string line; std::getline(lines, line);) {
        json document = json::parse(line);
        if (document["type"] == "buffer") {
            buffers.push_back(std::move(document));
        }
    }
    return buffers;
}

std::vector<std::string> codecsOf(const std::string& name) {
    std::vector<std::string> codecs;
    const json info = infoOf(name);
    for (const json& track : info["tracks"]) {
        codecs.push_back(track["codec"].get<std::string>());
    }
    return codecs;
}

std::string beginningOf(const TemporaryFolder& folder, const std::string& name) {
    return folder.read(name).substr(0, 8);
}

TEST(Samples, FindThePluginBesideTheProgram) {
    EXPECT_EQ(runProbe({"info", sample("mpeg4_b_mp3.ogm")}).exitCode, 0);
}

TEST(Samples, HaveTheCodecsThatWereMuxed) {
    constexpr const char* kMp3 = "MP3 (MPEG audio layer 3)";
    EXPECT_THAT(codecsOf("mpeg4_b_mp3.ogm"), ElementsAre("MPEG-4 Part 2", kMp3));
    EXPECT_THAT(codecsOf("mpeg4_mp3_ac3.ogm"), ElementsAre("MPEG-4 Part 2", kMp3, "AC-3"));
    EXPECT_THAT(codecsOf("mpeg4_vorbis.ogm"), ElementsAre("MPEG-4 Part 2"));
    EXPECT_THAT(codecsOf("h264_mp3vbr.ogm"), ElementsAre("H.264", kMp3));
    EXPECT_THAT(codecsOf("divx3_pcm16.ogm"), ElementsAre("DivX 3", "PCM"));
    EXPECT_THAT(codecsOf("mpeg2_ac3.ogm"), ElementsAre("MPEG-1/2 video", "AC-3"));
    EXPECT_THAT(codecsOf("mjpeg.ogm"), ElementsAre("Motion JPEG"));
    EXPECT_THAT(codecsOf("xvid_refused_mp3.ogm"), ElementsAre(kMp3));
}

TEST(Samples, HaveTheFormatsThatWereMuxed) {
    const json file = infoOf("mpeg4_b_mp3.ogm");
    EXPECT_EQ(file["container"]["mime"], "video/ogm");
    const json& video = file["tracks"][0];
    EXPECT_EQ(video["width"], 176);
    EXPECT_EQ(video["height"], 144);
    EXPECT_EQ(video["frame_rate"], 25);
    const json& audio = file["tracks"][1];
    EXPECT_EQ(audio["sample_rate"], 44100);
    EXPECT_EQ(audio["channel_count"], 1);
    EXPECT_EQ(audio["mpeg_audio_layer"], 3);
}

TEST(Samples, HaveAVideoObjectLayerInTheirEsds) {
    const json esds = infoOf("mpeg4_b_mp3.ogm")["tracks"][0]["esds"];
    EXPECT_EQ(esds["valid"], true);
    EXPECT_EQ(esds["tags"], json({3, 4, 5}));
    EXPECT_THAT(esds["video_object_layer"].get<std::string>(), testing::StartsWith("00000120"));
}

TEST(Samples, ShowTheDurationOfALongFileOnly) {
    const auto durationUs = infoOf("long_mpeg4_mp3.ogm")["container"]["duration_us"].get<int64_t>();
    EXPECT_NEAR(static_cast<double>(durationUs), 90e6, 1e6);
    EXPECT_THAT(runProbe({"info", sample("mpeg4_b_mp3.ogm")}).out, HasSubstr("duration unknown"));
}

TEST(Samples, GiveTheirPacketsInTheOrderOfTheirTimes) {
    std::map<int, int64_t> reachedUs;
    int64_t lastReachedUs = 0;
    const auto buffers = buffersOf({sample("mpeg4_mp3_ac3.ogm")});
    for (const json& buffer : buffers) {
        int64_t& reached = reachedUs[buffer["track"].get<int>()];
        reached = std::max(reached, buffer["time_us"].get<int64_t>());
        EXPECT_GE(reached, lastReachedUs);
        lastReachedUs = reached;
    }
    // 150 pictures and 232 and 188 audio frames were muxed; a few at the end are not returned.
    EXPECT_EQ(reachedUs.size(), 3U);
    EXPECT_GT(buffers.size(), 500U);
    EXPECT_LE(buffers.size(), 570U);
}

TEST(Samples, StartWithASyncFrameAfterTheCommentHeader) {
    const auto buffers = buffersOf({sample("long_mpeg4_mp3.ogm"), "--track", "0", "--count", "2"});
    ASSERT_EQ(buffers.size(), 2U);
    EXPECT_EQ(buffers[0]["sync"], false);
    EXPECT_EQ(buffers[1]["sync"], true);
}

TEST(Samples, LandOnASyncFrameNearTheTargetOfASeek) {
    const auto buffers = buffersOf(
            {sample("long_mpeg4_mp3.ogm"), "--track", "0", "--seek", "45", "--count", "1"});
    ASSERT_EQ(buffers.size(), 1U);
    EXPECT_EQ(buffers[0]["sync"], true);
    // There is a key frame every four seconds.
    EXPECT_NEAR(buffers[0]["time_us"].get<double>(), 45e6, 4e6);
}

TEST(Samples, PassASeekTest) {
    const ProcessResult result =
            runProbe({"seektest", "--json", "--steps", "10", sample("long_mpeg4_mp3.ogm")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const json document = json::parse(result.out);
    EXPECT_EQ(document["seeks"].size(), 11U);
    for (const json& seek : document["seeks"]) {
        EXPECT_GT(seek["reads"].get<int>(), 0);
    }
}

TEST(Samples, AreExtractedToFilesWithTheUsualBeginnings) {
    const TemporaryFolder folder;
    for (const char* name : {"mpeg4_mp3_ac3.ogm", "divx3_pcm16.ogm", "h264_mp3vbr.ogm"}) {
        const ProcessResult result =
                runProbe({"extract", sample(name), "-o", folder.path().string()});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_THAT(result.err, IsEmpty());
    }
    EXPECT_THAT(beginningOf(folder, "mpeg4_mp3_ac3.track0.m4v"),
                testing::StartsWith(std::string("\0\0\1", 3)));
    EXPECT_THAT(beginningOf(folder, "mpeg4_mp3_ac3.track1.mp3"), testing::StartsWith("\xff\xfb"));
    EXPECT_THAT(beginningOf(folder, "mpeg4_mp3_ac3.track2.ac3"), testing::StartsWith("\x0b\x77"));
    EXPECT_THAT(beginningOf(folder, "divx3_pcm16.track1.wav"), testing::StartsWith("RIFF"));
    EXPECT_THAT(beginningOf(folder, "h264_mp3vbr.track0.h264"),
                testing::StartsWith(std::string("\0\0", 2)));
}

TEST(Samples, OfAnotherKindAreNotTaken) {
    const TemporaryFolder folder;
    const ProcessResult result = runProbe({"info", folder.write("a.txt", "no media file")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, HasSubstr("not recognised"));
}

json streamsOf(const std::string& name) {
    return infoOf(name)["from_file"]["streams"];
}

TEST(Samples, HaveTheirStreamsWithoutATrackInTheTable) {
    const ProcessResult refused = runProbe({"info", sample("xvid_refused_mp3.ogm")});
    EXPECT_THAT(refused.out, HasSubstr("      -  video  XVID "));
    EXPECT_THAT(refused.out, HasSubstr("no track: unknown codec XVID\n"));
    EXPECT_THAT(refused.out, HasSubstr("\n  1 stream has no track: ogmprobe explain\n"));
    const ProcessResult vorbis = runProbe({"info", sample("mpeg4_vorbis.ogm")});
    EXPECT_THAT(vorbis.out, HasSubstr("no track: Vorbis: ignored\n"));
    EXPECT_EQ(streamsOf("mpeg4_mp3_ac3.ogm")[2]["why_no_track"], nullptr);
}

TEST(Samples, HaveTheDurationOfTheirPages) {
    const json info = infoOf("mpeg4_b_mp3.ogm");
    EXPECT_EQ(info["container"]["duration_us"], 0);
    EXPECT_EQ(info["from_file"]["duration_us"], 6034285);
    EXPECT_THAT(runProbe({"info", sample("mpeg4_b_mp3.ogm")}).out,
                HasSubstr("duration unknown to the plug-in (0:00:06.034 by the pages), 2 tracks"));
}

TEST(Samples, HaveThePacketsBitratesAndTagsOfTheirStreams) {
    const json streams = streamsOf("mpeg4_b_mp3.ogm");
    ASSERT_EQ(streams.size(), 2U);
    EXPECT_EQ(streams[0]["kind"], "video");
    EXPECT_EQ(streams[0]["packets"], 150);
    EXPECT_EQ(streams[0]["track"], 0);
    EXPECT_GE(streams[0]["largest_bitrate"], streams[0]["average_bitrate"]);
    EXPECT_EQ(streams[1]["tag"], "0055");
    EXPECT_EQ(streamsOf("divx3_pcm16.ogm")[1]["bits_per_sample"], 16);
}

TEST(Samples, HaveTheFactsOfTheHeadersInTheirVideo) {
    EXPECT_EQ(streamsOf("mpeg4_b_mp3.ogm")[0]["video"]["interlaced"], false);
    EXPECT_EQ(streamsOf("mpeg4_b_mp3.ogm")[0]["video"]["width"], 176);
    EXPECT_EQ(streamsOf("mpeg2_ac3.ogm")[0]["video"]["profile"], "Main");
    EXPECT_EQ(streamsOf("h264_mp3vbr.ogm")[0]["video"]["width"], 176);
    EXPECT_EQ(streamsOf("mjpeg.ogm")[0]["video"], nullptr);
}

TEST(Samples, HaveTheFactsInTheHeadersInsideTheirStreams) {
    const std::string variable = runProbe({"info", sample("h264_mp3vbr.ogm")}).out;
    EXPECT_THAT(variable,
                HasSubstr(" video: 25 fps, High profile, level 1.2, 176x144, sample aspect "
                          "1:1, 11:9 picture, progressive, 4:2:0\n"));
    EXPECT_THAT(variable, HasSubstr(" audio: MPEG-1 layer III, 44100 Hz, 2 channels, 35 kbit/s on "
                                    "average, joint stereo, encoder LAME3.100\n"));
    const std::string uneven = runProbe({"info", sample("mpeg4_2997_ac3.ogm")}).out;
    EXPECT_THAT(uneven, HasSubstr(" video: 29.97 fps, "));
    EXPECT_THAT(uneven, HasSubstr(", encoder Lavc59.37.100\n"));
    EXPECT_THAT(uneven, HasSubstr(" audio: AC-3, 48000 Hz, 2 channels, 128 kbit/s constant, "
                                  "stereo, service complete "
                                  "main, dialogue at -31 dB\n"));
    EXPECT_THAT(runProbe({"info", sample("mpeg4_vorbis.ogm")}).out,
                HasSubstr(" audio: Vorbis, 44100 Hz, 2 channels, 80 kbit/s nominal\n"));
}

TEST(Samples, HaveTheirCommentsMarkedAsTheFilesOwn) {
    const json comments = streamsOf("mpeg4_b_mp3.ogm")[0]["comments"];
    EXPECT_FALSE(comments["vendor"].get<std::string>().empty());
    EXPECT_THAT(runProbe({"info", sample("mpeg4_b_mp3.ogm")}).out,
                HasSubstr("  From the file itself, 274 kbit/s in all:\n"));
}

TEST(Samples, NameThePluginByItsDefinition) {
    EXPECT_EQ(infoOf("mjpeg.ogm")["extractor"], "ZOR OGM Extractor");
}

/** Returns the tool's output for the file; nothing if it is not installed. */
std::string probedBy(const std::string& path) {
    const std::string command =
            "ffprobe -v error -show_entries stream=codec_name -of csv=p=0 '" + path + "' 2>&1";
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe)) {
        text += static_cast<char>(letter);
    }
    pclose(pipe);
    return text.substr(0, text.find_first_of(",\n"));
}

TEST(Samples, GiveFilesThatOtherProgramsOpen) {
    if (std::system("command -v ffprobe >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "ffprobe is not installed";
    }
    const TemporaryFolder folder;
    for (const char* name : {"divx3_pcm16.ogm", "mpeg4_mp3_ac3.ogm", "h264_mp3vbr.ogm",
                             "mpeg2_ac3.ogm", "mjpeg.ogm"}) {
        runProbe({"extract", sample(name), "-o", folder.path().string()});
    }
    for (const auto& [file, codec] : {std::pair{"divx3_pcm16.track0.avi", "msmpeg4v3"},
                                      std::pair{"divx3_pcm16.track1.wav", "pcm_s16le"},
                                      std::pair{"mpeg4_mp3_ac3.track0.m4v", "mpeg4"},
                                      std::pair{"mpeg4_mp3_ac3.track1.mp3", "mp3"},
                                      std::pair{"mpeg4_mp3_ac3.track2.ac3", "ac3"},
                                      std::pair{"h264_mp3vbr.track0.h264", "h264"},
                                      std::pair{"mpeg2_ac3.track0.m2v", "mpeg2video"},
                                      std::pair{"mjpeg.track0.mjpeg", "mjpeg"}}) {
        EXPECT_EQ(probedBy(folder.path(file)), codec) << file;
    }
}

}  // namespace
}  // namespace ogmprobe::test::samples_test
