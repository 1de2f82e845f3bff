// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"
#include "FakeFile.h"

namespace ogmprobe::test::sync_test {
namespace {

using namespace android::ogm::test;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
/** First byte of an audio packet for which the plug-in and the format have the same header size. */
constexpr uint8_t kUsualAudio = 0x80;

class SyncedFile {
  public:
    explicit SyncedFile(const Bytes& bytes)
        : mPath(mFolder.write("a.ogm", std::string(bytes.begin(), bytes.end()))) {}

    ProcessResult run(std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"sync", mPath});
        return runProbe(options);
    }
    json document() const { return json::parse(run({"--json"}).out); }

  private:
    TemporaryFolder mFolder;
    std::string mPath;
};

AudioHeader ac3Header() {
    AudioHeader header;
    header.subtype = "2000";
    header.samplesPerUnit = 48000;
    header.channels = 2;
    return header;
}

/** A page with this number of frames, each in its own packet. */
OggPage ac3Page(uint64_t granule, size_t frames, uint32_t& seed) {
    OggPage page(kAudio);
    page.granule(granule);
    for (size_t i = 0; i < frames; ++i) {
        Ac3Frame frame;
        frame.seed = ++seed;
        page.packet(audioPacket(frame.bytes(), kUsualAudio));
    }
    return page;
}

/**
 * More than two seconds of video and audio: one picture per page, and `frames` AC-3 frames per
 * page, whose granule positions are `shift` plus the result of `scale` for the number of samples.
 */
OgmFile fileWith(size_t frames, uint64_t shift = 0, double scale = 1) {
    constexpr size_t kPages = 80;
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, ac3Header());
    uint32_t seed = 0;
    for (size_t i = 0; i < kPages; ++i) {
        for (size_t picture = 0; picture < frames; ++picture) {
            const size_t number = i * frames + picture;
            file.addData(kVideo, number + 1,
                         dataPacket(kSyncPacket, pattern(50, static_cast<uint32_t>(number))));
        }
        const double samples = 1536.0 * static_cast<double>((i + 1) * frames) * scale;
        file.add(ac3Page(shift + static_cast<uint64_t>(samples), frames, seed));
    }
    return file;
}

json exactly(int64_t timeUs) {
    return {{"least", timeUs}, {"most", timeUs}};
}

TEST(Sync, APacketAPageHasTheTimeOfThePages) {
    const json document = SyncedFile(fileWith(1).bytes()).document();
    ASSERT_EQ(document["tracks"].size(), 2U);
    for (const json& track : document["tracks"]) {
        EXPECT_EQ(track["granules_are"], "end");
        EXPECT_EQ(track["spread_us"], exactly(0));
        EXPECT_EQ(track["drift_ppm"], 0);
        EXPECT_TRUE(track["earliest"].is_null());
        // The plug-in does not return the last two of 80.
        EXPECT_EQ(track["compared"], 78);
        EXPECT_EQ(track["exact"], 78);
    }
    EXPECT_EQ(document["summary"], "audio keeps with the video");
}

TEST(Sync, FramesOnOnePageAreEarlyByTheFramesBeforeThem) {
    const json audio = SyncedFile(fileWith(4).bytes()).document()["tracks"][1];
    // A frame lasts 32 ms.
    EXPECT_EQ(audio["packets"][0]["late_us"], exactly(0));
    EXPECT_EQ(audio["packets"][3]["page_us"], exactly(96000));
    EXPECT_EQ(audio["earliest"]["late_us"], exactly(-96000));
    EXPECT_EQ(audio["drift_ppm"], 0);
}

TEST(Sync, AudioThatBeginsLateInTheFileComesTooEarlyOnItsFirstPage) {
    constexpr uint64_t kHalfASecond = 24000;
    const json document = SyncedFile(fileWith(1, kHalfASecond).bytes()).document();
    const json& audio = document["tracks"][1];
    EXPECT_TRUE(audio["read_like_others"]);
    EXPECT_EQ(audio["packets"][0]["page_us"], exactly(500000));
    EXPECT_EQ(audio["packets"][0]["late_us"], exactly(-500000));
    EXPECT_EQ(audio["packets"][1]["late_us"], exactly(0));
    EXPECT_EQ(audio["offset_us"], exactly(0));
    EXPECT_THAT(document["summary"].get<std::string>(),
                StartsWith("audio runs up to 0.500 s early at 0:00:00.5"));
}

TEST(Sync, PagesThatRunFasterThanTheirSamplesAreReported) {
    const SyncedFile file(fileWith(2, 0, 1.01).bytes());
    const auto ppm = file.document()["tracks"][1]["content_drift_ppm"].get<double>();
    EXPECT_NEAR(ppm, 10000, 20);
    EXPECT_THAT(file.run().out, HasSubstr("The pages of track 1 go faster than its samples by "));
    EXPECT_TRUE(SyncedFile(fileWith(2).bytes()).document()["tracks"][1]["content_drift_ppm"] == 0);
}

TEST(Sync, ARateThatThePluginRoundsMakesItDrift) {
    AudioHeader header;
    header.timeUnit = 20000000;
    header.samplesPerUnit = 16001;
    header.subtype = "00FF";
    OgmFile file;
    file.addHeader(kAudio, header);
    for (uint64_t i = 1; i <= 40; ++i) {
        file.addData(kAudio, i * 8000,
                     dataPacket(0x40, {0}, pattern(20, static_cast<uint32_t>(i))));
    }
    const json track = SyncedFile(file.bytes()).document()["tracks"][0];
    EXPECT_EQ(track["granules_are"], "unknown");
    // 8000 instead of 8000.5 samples per second.
    EXPECT_NEAR(track["drift_ppm"].get<double>(), 62.5, 0.5);
}

TEST(Sync, WithoutLengthsThereAreBounds) {
    AudioHeader header;
    header.subtype = "00FF";
    OgmFile file;
    file.addHeader(kAudio, header);
    for (uint64_t i = 1; i <= 10; ++i) {
        OggPage page(kAudio);
        page.granule(i * 8000);
        page.packet(dataPacket(0x40, {0}, pattern(20, static_cast<uint32_t>(i))));
        page.packet(dataPacket(0x40, {0}, pattern(20, static_cast<uint32_t>(i + 100))));
        file.add(page);
    }
    const json track = SyncedFile(file.bytes()).document()["tracks"][0];
    EXPECT_EQ(track["exact"], 0);
    EXPECT_EQ(track["packets"][2]["page_us"], (json{{"least", 1000000}, {"most", 2000000}}));
    EXPECT_TRUE(track["earliest"].is_null());
    EXPECT_THAT(SyncedFile(file.bytes()).run().out,
                HasSubstr("Track 0 (audio) has the times of the pages as far as they show"));
}

TEST(Sync, OfASampleEachNumberIsTheOneOfItsPages) {
    const json document = SyncedFile(sampleBytes("long_mpeg4_mp3.ogm")).document();
    const json& audio = document["tracks"][1];
    // The first page has 20 frames, of which the last begins at 21888 samples: the first at 0.
    EXPECT_EQ(audio["granules_are"], "beginning");
    EXPECT_EQ(audio["packets"][0]["page_us"], exactly(0));
    EXPECT_EQ(audio["packets"][19]["page_us"], exactly(21888 * 1000000LL / 44100));
    EXPECT_EQ(audio["earliest"]["late_us"], exactly(-522449));
}

TEST(Sync, CsvHasALineForEachPacket) {
    const auto result = SyncedFile(sampleBytes("mjpeg.ogm")).run({"--csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, StartsWith("file,track,serial,number,offset,page_from,page_to,time,"
                                       "late_from,late_to\n"));
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 151);
    EXPECT_THAT(result.out, HasSubstr(",0.040000,0.040000,0.000000,-0.040000,-0.040000\n"));
}

TEST(Sync, ThePacketsAreListedOnRequest) {
    const auto result = SyncedFile(sampleBytes("mjpeg.ogm")).run({"--packets"});
    EXPECT_THAT(result.out, HasSubstr("Track  Number  Offset  Page's time  Plug-in's time"));
    EXPECT_THAT(result.out, HasSubstr("Track 0 (video) is up to 0.040 s early"));
}

TEST(Sync, SeveralFilesHaveALineEach) {
    const TemporaryFolder folder;
    const Bytes bytes = fileWith(1).bytes();
    const std::string text(bytes.begin(), bytes.end());
    const std::string a = folder.write("a.ogm", text);
    const std::string b = folder.write("b.ogm", text);
    EXPECT_EQ(runProbe({"sync", a, b}).out,
              a + ": audio keeps with the video\n" + b + ": audio keeps with the video\n");
}

TEST(Sync, ADamagedFileIsComparedAsFarAsItGoes) {
    Bytes bytes = sampleBytes("mpeg4_mp3_ac3.ogm");
    std::fill(bytes.begin() + 90000, bytes.begin() + 95000, 0);
    const json document = SyncedFile(bytes).document();
    EXPECT_EQ(document["exit_code"], 0);
    EXPECT_EQ(document["tracks"].size(), 3U);
    bytes.resize(100);
    const auto cut = SyncedFile(bytes).run();
    EXPECT_EQ(cut.exitCode, 0);
    EXPECT_THAT(cut.out, StartsWith("  Track"));
}

TEST(Sync, ATrackThatReturnsNothingIsNotCompared) {
    Bytes bytes = sampleBytes("mpeg4_mp3_ac3.ogm");
    bytes.resize(60000);
    EXPECT_THAT(SyncedFile(bytes).run().out,
                HasSubstr("Track 0 (video): nothing on the pages is returned; "));
}

TEST(Sync, AFileThatIsNotTakenIsAnError) {
    const auto result = SyncedFile(Bytes(1000, 'x')).run();
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(runProbe({"sync", "/nowhere"}).exitCode, 2);
}

TEST(Sync, AFileOfAnotherFormatHasNothingToCompare) {
    const FakePlugin plugin;
    const auto result = FakePlugin::run({"sync", plugin.file(fakeFile({fakeVideo()}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("the file has no Ogg pages to compare the times with"));
    EXPECT_EQ(result.out, "No track with times on the pages.\n");
}

TEST(Sync, ADeathIsAnErrorInADocumentThatIsWhole) {
    const FakePlugin plugin;
    auto dying = fakeVideo();
    dying["end"] = "abort";
    const auto result = FakePlugin::run({"sync", "--json", plugin.file(fakeFile({dying}))});
    EXPECT_EQ(result.exitCode, 4);
    const json document = json::parse(result.out);
    EXPECT_EQ(document["exit_code"], 4);
    ASSERT_EQ(document["errors"].size(), 1U);
    EXPECT_EQ(document["errors"][0]["exit_code"], 4);
    EXPECT_EQ(document["tracks"], json::array());
}

}  // namespace
}  // namespace ogmprobe::test::sync_test
