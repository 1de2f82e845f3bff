// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "ExplainedFile.h"
#include "FakeFile.h"

/** The command with one file: verdicts, reasons, exit codes. */
namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string sample(const std::string& name) {
    return std::string(OGMPROBE_SAMPLES "/") + name;
}

std::set<std::string> idsOf(const json& reasons) {
    std::set<std::string> ids;
    for (const auto& reason : reasons) {
        ids.insert(reason["id"].get<std::string>());
    }
    return ids;
}

const json& reasonOf(const json& reasons, const std::string& id) {
    static const json kNone;
    for (const auto& reason : reasons) {
        if (reason["id"] == id) {
            return reason;
        }
    }
    return kNone;
}

/** The member of "files" of the only file. */
json checked(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"check", "--json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return json::parse(runProbe(all).out).at("files").at(0);
}

json checkedFake(const FakePlugin& plugin, const std::vector<json>& tracks) {
    const auto result = FakePlugin::run({"check", "--json", plugin.file(fakeFile(tracks))});
    return json::parse(result.out).at("files").at(0);
}

json withFormat(json track, const std::string& name, const json& value) {
    if (value.is_null()) {
        track["format"].erase(name);
    } else {
        track["format"][name] = value;
    }
    return track;
}

TEST(CheckTest, AFileWithoutFaultsPlaysWithExitCode0) {
    const FakePlugin plugin;
    const auto result =
            FakePlugin::run({"check", plugin.file(fakeFile({fakeVideo(), fakeAudio()}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("a.fake: plays\n"));
    EXPECT_THAT(
            result.out,
            HasSubstr("  track 0, video, H.264, 64x48, ? fps: plays (c2.android.avc.decoder)\n"));
    EXPECT_EQ(result.err, "");
}

TEST(CheckTest, AnUnknownDurationIsAFaultWithExitCode6) {
    const FakePlugin plugin;
    json file = fakeFile({fakeVideo()});
    file["container"]["durationUs"] = 0;
    const auto result = FakePlugin::run({"check", plugin.file(file)});
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_THAT(result.out, HasSubstr("fault: The duration is unknown"));
}

TEST(CheckTest, ACodecWithoutADecoderDoesNotPlayWithExitCode7) {
    const FakePlugin plugin;
    const auto result = FakePlugin::run(
            {"check", plugin.file(fakeFile({withFormat(fakeAudio(), "mime", "audio/eac3")}))});
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_THAT(result.out, HasSubstr("fatal: no decoder for audio/eac3 among the software "
                                      "decoders of a stock Android 13 (no-decoder)"));
}

TEST(CheckTest, WhatADecoderIsSetUpWithIsMissed) {
    const FakePlugin plugin;
    const json file = checkedFake(plugin, {withFormat(fakeVideo(), "width", nullptr),
                                           withFormat(fakeAudio(), "sample-rate", nullptr),
                                           withFormat(fakeAudio(), "mime", "audio/mp4a-latm")});
    EXPECT_THAT(idsOf(file["tracks"][0]["reasons"]), Contains("size-missing"));
    EXPECT_THAT(idsOf(file["tracks"][1]["reasons"]), Contains("sample-rate-missing"));
    EXPECT_THAT(idsOf(file["tracks"][2]["reasons"]), Contains("configuration-missing"));
    EXPECT_EQ(file["verdict"], "does not play");
}

TEST(CheckTest, ASizeAboveWhatTheDecoderDeclaresDoesNotPlay) {
    const FakePlugin plugin;
    json video = withFormat(fakeVideo(), "mime", "video/mp4v-es");
    video["format"]["width"] = 640;
    const json file = checkedFake(plugin, {video});
    const json& reason = reasonOf(file["tracks"][0]["reasons"], "size-outside");
    EXPECT_EQ(reason["value"], 640);
    EXPECT_EQ(reason["limit"], 352);
}

TEST(CheckTest, TimesBelow0AndStepsBackAreFaults) {
    const FakePlugin plugin;
    json audio = fakeAudio();
    audio["buffers"][0]["time_us"] = -40000;
    audio["buffers"].push_back({{"time_us", 20000}, {"sync", 1}, {"hex", "33"}});
    const json file = checkedFake(plugin, {audio});
    EXPECT_THAT(idsOf(file["tracks"][0]["reasons"]), Contains("negative-times"));
    EXPECT_THAT(idsOf(file["tracks"][0]["reasons"]), Contains("times-step-back"));
    EXPECT_EQ(file["verdict"], "plays with faults");
}

TEST(CheckTest, VideoWithoutASyncFrameIsAFault) {
    const FakePlugin plugin;
    json video = fakeVideo();
    video["buffers"][0].erase("sync");
    const json file = checkedFake(plugin, {video});
    EXPECT_THAT(idsOf(file["tracks"][0]["reasons"]), Contains("no-sync-frames"));
}

TEST(CheckTest, ATrackThatGivesNothingDoesNotPlay) {
    const FakePlugin plugin;
    json audio = fakeAudio();
    audio["buffers"] = json::array();
    EXPECT_THAT(idsOf(checkedFake(plugin, {audio})["tracks"][0]["reasons"]),
                Contains("track-without-packets"));
}

TEST(CheckTest, AFileWithoutTracksDoesNotPlay) {
    const FakePlugin plugin;
    const json file = checkedFake(plugin, {});
    EXPECT_THAT(idsOf(file["reasons"]), Contains("no-tracks"));
    EXPECT_EQ(file["exit_code"], 7);
}

TEST(CheckTest, WhatEndsOrBlocksTheExtractorDoesNotPlay) {
    const FakePlugin plugin;
    std::vector<std::string> mischiefs = {"crash", "assert",         "exit",    "hang",
                                          "spin",  "scribble noise", "allocate"};
    if (canFilterSystemCalls()) {
        mischiefs.emplace_back("socket");
    }
    for (const std::string& mischief : mischiefs) {
        json video = fakeVideo();
        video["end"] = mischief;
        const auto result = FakePlugin::run(
                {"check", "--json", "--timeout", "0.3", plugin.file(fakeFile({video}))});
        const json file = json::parse(result.out).at("files").at(0);
        EXPECT_THAT(idsOf(file["reasons"]), Contains("extractor-ended")) << mischief;
        EXPECT_EQ(result.exitCode, 7) << mischief;
    }
}

TEST(CheckTest, AStreamThatTheExtractorRefusesIsReportedWithoutATrack) {
    const json file = checked({sample("xvid_refused_mp3.ogm")});
    ASSERT_EQ(file["tracks"].size(), 2U);
    const json& stream = file["tracks"][1];
    EXPECT_TRUE(stream["track"].is_null());
    EXPECT_EQ(stream["kind"], "video");
    EXPECT_EQ(stream["codec"], "XVID");
    EXPECT_THAT(idsOf(stream["reasons"]), Contains("codec-not-supported"));
    EXPECT_EQ(file["verdict"], "does not play");
    EXPECT_EQ(file["tracks"][0]["verdict"], "plays");
}

TEST(CheckTest, AnIgnoredVorbisStreamDoesNotPlay) {
    const json file = checked({sample("mpeg4_vorbis.ogm")});
    EXPECT_THAT(idsOf(file["tracks"][1]["reasons"]), Contains("vorbis-stream"));
}

TEST(CheckTest, AProfileThatAndroidsDecoderDoesNotTakeIsFoundInTheStream) {
    const json file = checked({sample("mpeg4_b_mp3.ogm")});
    EXPECT_EQ(reasonOf(file["tracks"][0]["reasons"], "profile-outside")["subject"],
              "Advanced Simple");
    EXPECT_THAT(idsOf(checked({sample("mpeg4_2997_ac3.ogm")}).at("tracks").at(0).at("reasons")),
                Not(Contains("profile-outside")));
}

TEST(CheckTest, ADevicesListDecides) {
    const TemporaryFolder folder;
    const std::string list = folder.write("media_codecs.xml", R"(<MediaCodecs><Decoders>
        <MediaCodec name="c2.x.mpeg4" type="video/mp4v-es"><Limit name="frame-rate" range="1-20"/>
        </MediaCodec><MediaCodec name="c2.x.mp3" type="audio/mpeg"/></Decoders></MediaCodecs>)");
    const json file = checked({sample("mpeg4_b_mp3.ogm"), "--codecs", list});
    EXPECT_EQ(file["tracks"][0]["decoder"], "c2.x.mpeg4");
    const json& reason = reasonOf(file["tracks"][0]["reasons"], "frame-rate-outside");
    EXPECT_EQ(reason["value"], 25);
    EXPECT_EQ(reason["limit"], 20);
    EXPECT_EQ(file["tracks"][1]["decoder"], "c2.x.mp3");
}

TEST(CheckTest, SoundThatIsMoreThan80MillisecondsFromThePictureIsAFault) {
    EXPECT_THAT(idsOf(checked({sample("mpeg4_2997_ac3.ogm")}).at("tracks").at(1).at("reasons")),
                AllOf(Contains("no-decoder"), Not(Contains("audio-against-video"))));
    // Its frames have different sizes, and the plug-in computes their times from their bytes.
    EXPECT_THAT(idsOf(checked({sample("h264_mp3vbr.ogm")})["tracks"][1]["reasons"]),
                Contains("audio-against-video"));
}

TEST(CheckTest, PicturesOfOnePageThatShareATimeAreAFault) {
    const json file = checked({sample("h264_mp3vbr.ogm")});
    EXPECT_EQ(reasonOf(file["tracks"][0]["reasons"], "pictures-share-times")["value"], 440000);
}

TEST(CheckTest, LostFramesAreCountedFromTheLedger) {
    const Bytes bytes = sampleBytes("long_mpeg4_mp3.ogm");
    const std::vector<size_t> pages = pageOffsets(bytes);
    constexpr size_t kSerial = 14;
    // In the video, packets after a falling granule position are dropped.
    const auto page = std::find_if(pages.begin() + 200, pages.end(),
                                   [&](size_t offset) { return bytes[offset + kSerial] == 0; });
    const ExplainedFile damaged(withGranule(bytes, *page, UINT64_MAX / 2));
    const json file = checked({damaged.path()});
    const json& track = file["tracks"][0];
    const json& reason = reasonOf(track["reasons"], "frames-lost");
    EXPECT_EQ(reason["text"],
              "4 of 2251 packets are not returned: 4 dropped at a falling granule position");
    EXPECT_EQ(reason["value"], 4);
    EXPECT_EQ(reason["subject"], "MPEG-4 Part 2");
    EXPECT_EQ(track["in_file"], 2251);
    EXPECT_EQ(track["handed_out"], 2242);
}

TEST(CheckTest, PagesThatAreLostAreAFault) {
    Bytes bytes = sampleBytes("long_mpeg4_mp3.ogm");
    const std::vector<size_t> pages = pageOffsets(bytes);
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(pages[40]),
              bytes.begin() + static_cast<std::ptrdiff_t>(pages[44]), 0);
    const ExplainedFile damaged(bytes);
    const json file = checked({damaged.path()});
    EXPECT_THAT(reasonOf(file["reasons"], "junk-skipped")["text"].get<std::string>(),
                HasSubstr("lost there"));
}

TEST(CheckTest, AFileThatIsNotThereIsAnErrorAndHasNoVerdict) {
    const auto result = runProbe({"check", "/nowhere/a.ogm"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "ogmprobe: error: /nowhere/a.ogm: cannot open: No such file or directory\n");
    EXPECT_EQ(checked({"/nowhere/a.ogm"})["verdict"], "unknown");
}

TEST(CheckTest, AFileThatTheExtractorRefusesIsNotPlayed) {
    const TemporaryFolder folder;
    const auto result = runProbe({"check", folder.write("a.ogm", "no media file at all")});
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_THAT(result.out, HasSubstr("(not-taken)"));
}

TEST(CheckTest, StandardInputCanBeChecked) {
    const Bytes bytes = sampleBytes("mpeg4_pcm8.ogm");
    ProcessSetup setup;
    setup.in.assign(bytes.begin(), bytes.end());
    const auto result = runProbe({"check", "-"}, setup);
    EXPECT_THAT(result.out, StartsWith("-: does not play"));
    const auto several = runProbe({"check", "-", sample("mpeg4_pcm8.ogm")}, setup);
    EXPECT_THAT(several.out, HasSubstr("2 files: 0 play"));
}

TEST(CheckTest, APluginThatCannotBeLoadedIsOneErrorForAllFiles) {
    for (const auto& files :
         {std::vector<std::string>{sample("mjpeg.ogm")},
          std::vector<std::string>{sample("mjpeg.ogm"), sample("mpeg4_pcm8.ogm")}}) {
        std::vector<std::string> arguments = {"--plugin", "/nowhere/x.so", "check"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        const auto result = runProbe(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, StartsWith("ogmprobe: error: cannot load the plug-in"));
    }
}

TEST(CheckTest, CsvHasAHeadingAndALineForEachReason) {
    const auto result = runProbe({"check", "--csv", sample("xvid_refused_mp3.ogm")});
    EXPECT_THAT(result.out, StartsWith("file,verdict,track,kind,mime,format,decoder,severity,"
                                       "reason,value,limit,text\n"));
    EXPECT_THAT(result.out, HasSubstr(",fatal,codec-not-supported,"));
}

}  // namespace
}  // namespace ogmprobe::test
