// SPDX-License-Identifier: Apache-2.0
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"

namespace ogmprobe::test::explain_streams_test {
namespace {

using namespace android::ogm::test;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
constexpr uint32_t kOther = 7;

/** A file whose last header announces the given stream; one of its pages follows the first pages.
 */
OgmFile fileWith(const Bytes& header) {
    OgmFile file = videoAndAudio(0, 0);
    file.addHeader(kOther, header);
    for (int i = 1; i <= 20; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
        file.addData(kAudio, i * 320, audioPacket(pattern(50, i)));
    }
    return file;
}

nlohmann::json expectNoTrack(const Bytes& header, const std::string& id, const std::string& name,
                             const std::string& reason, const std::string& line) {
    const ExplainedFile file(fileWith(header).bytes());
    const auto finding = file.expectOne(
            id, "No track for the " + name + " stream with serial number 7: " + reason + ".", line);
    EXPECT_EQ(finding["serial"], kOther);
    EXPECT_FALSE(finding["usual"]);
    return finding;
}

TEST(ExplainStreams, ACodecThatIsNotInTheTableIsNamed) {
    VideoHeader video;
    video.subtype = "XVID";
    const auto finding =
            expectNoTrack(video.bytes(), "codec-not-supported", "video XVID",
                          "its codec \"XVID\" is not in the plug-in's list (case matters)",
                          "unknow video codec: 58564944");
    EXPECT_EQ(finding["offset"], 2 * (28 + kStreamHeaderSize));
    AudioHeader audio;
    audio.subtype = "0161";
    expectNoTrack(audio.bytes(), "codec-not-supported", "audio 0161",
                  "its audio format tag \"0161\" is not in the plug-in's list",
                  "unknown audio codec:30313631");
}

TEST(ExplainStreams, IgnoredStreamsAreNamed) {
    expectNoTrack(textHeader(), "text-stream", "text", "text and subtitles are ignored",
                  "************* unknow header 01 74 65 78 74 00 00 00 **************");
    expectNoTrack(vorbisIdentificationHeader(), "vorbis-stream", "Vorbis", "Vorbis is ignored",
                  "Verify Vorbis Header");
    expectNoTrack(theoraIdentificationHeader(), "theora-stream", "Theora", "Theora is ignored",
                  "************* unknow header 80 74 68 65 6f 72 61 00 **************");
    expectNoTrack(bytesOf("fishead\0"), "unknown-stream", "unknown",
                  "its first packet is no header of an OGM stream",
                  "************* unknow header 66 69 73 68 65 61 64 00 **************");
}

TEST(ExplainStreams, AHeaderAfterTheFirst121PagesIsTooLate) {
    OgmFile late;
    late.addHeader(kVideo, VideoHeader());
    for (int i = 1; i <= 120; ++i) {
        late.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
    }
    const size_t offset = late.addHeader(kAudio, AudioHeader());
    late.addData(kVideo, 121, dataPacket(kSyncPacket, pattern(50, 1)));
    const auto finding = ExplainedFile(late.bytes())
                                 .expectOne("header-too-late",
                                            "No track for the audio 0001 stream with serial number "
                                            "2: its header is page 122 of the file, and streams "
                                            "are looked for on the first 121 only.",
                                            "");
    EXPECT_EQ(finding["offset"], offset);
}

TEST(ExplainStreams, AHeaderAfterADamagedPageIsNotReached) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    const size_t damaged = file.add(OggPage(kVideo).version(3).packet(filled(9, 1)));
    file.addHeader(kAudio, AudioHeader());
    file.addData(kVideo, 1, dataPacket(kSyncPacket, pattern(50, 1)));
    const std::string place = std::to_string(damaged);
    ExplainedFile(file.bytes())
            .expectOne("header-not-reached",
                       "No track for the audio 0001 stream with serial number 2: the search for "
                       "streams ended at a place that cannot be read, at offset " +
                               place + ".",
                       "Cannot read a page header, at " + place);
}

TEST(ExplainStreams, AHeaderAfterJunkIsNotFound) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addJunk(10);
    file.addHeader(kAudio, AudioHeader());
    file.addData(kVideo, 1, dataPacket(kSyncPacket, pattern(50, 1)));
    const auto found = ExplainedFile(file.bytes()).findings("header-behind-junk");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["text"],
              "No track for the audio 0001 stream with serial number 2: 10 bytes of junk come "
              "before its header page, and the header is looked for where the junk begins.");
    EXPECT_THAT(found[0]["log"]["text"].get<std::string>(),
                testing::StartsWith("************* unknow header"));
}

TEST(ExplainStreams, AHeaderInTheJunkIsReadAsThatOfTheNextStream) {
    Bytes bytes = sampleBytes("mpeg4_b_mp3.ogm");
    bytes[0] = 'X';
    const ExplainedFile file(bytes);
    const auto finding = file.expectOne(
            "header-from-junk",
            "The track of the stream with serial number 1 has the format of another one: 85 bytes "
            "of junk come before its header page, the header is looked for where the junk "
            "begins, and one lies there.",
            "SerialNo = 1");
    EXPECT_EQ(finding["track"], 0);
    file.expectOne("header-missing",
                   "No track for the stream with serial number 0: no page announces it (29 pages "
                   "from offset 170 on). Its header page may be what is damaged at offset 0.",
                   "");
}

TEST(ExplainStreams, AHeaderThatIsCutOffMakesNoTrack) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, AudioHeader());
    ExplainedFile(head(file.bytes(), file.size() - 1))
            .expectOne("header-cut-off",
                       "No track for the audio 0001 stream with serial number 2: its header page "
                       "is cut off.",
                       "Cannot read page data, size 53");
}

TEST(ExplainStreams, AStreamWithoutAHeaderPageHasNoTrack) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addPages(kVideo, {Bytes(20, 1), Bytes(20, 1)});
    file.addPages(kOther, {Bytes(20, 1)});
    ExplainedFile(file.bytes())
            .expectOne("header-missing",
                       "No track for the stream with serial number 7: no page announces it (1 page "
                       "from offset 177 on).",
                       "");
}

TEST(ExplainStreams, ATrackWithoutItsCodecConfigurationIsReported) {
    for (const auto& [name, text] :
         {std::pair{"mpeg4_b_mp3.ogm",
                    "No MPEG-4 configuration (video object layer) was found: the track has no "
                    "ESDS, and a decoder may not start."},
          std::pair{"xvid_refused_mp3.ogm",
                    "No MPEG audio frame was confirmed: MIME type and layer are those that the "
                    "stream header suggests."}}) {
        Bytes bytes = sampleBytes(name);
        const auto offsets = pageOffsets(bytes);
        for (size_t i = offsets[4]; i < bytes.size(); ++i) {
            if (bytes[i] == 0x20 || bytes[i] == 0xfb) {
                bytes[i] = 0x10;
            }
        }
        const auto found = ExplainedFile(bytes).findings("codec-config-missing");
        ASSERT_FALSE(found.empty()) << name;
        EXPECT_EQ(found[0]["text"], text);
        EXPECT_THAT(found[0]["log"]["text"].get<std::string>(),
                    testing::StartsWith("collect type["));
    }
}

std::string refusalOf(const Bytes& bytes, const std::string& line) {
    const ExplainedFile file(bytes);
    EXPECT_EQ(file.run().exitCode, 3);
    const auto found = file.findings("not-taken");
    EXPECT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["log"]["text"], line);
    return found[0]["text"].get<std::string>();
}

TEST(ExplainRefusal, SaysThatTheFileIsTooShort) {
    EXPECT_EQ(refusalOf(bytesOf("Ogg"), "Sniff:DataSource read fail, length=3"),
              "The plug-in does not take the file. The file is too short: fewer than 4 bytes can "
              "be read.");
}

TEST(ExplainRefusal, SaysThatNoPageBeginsWhereOneIsExpected) {
    EXPECT_EQ(refusalOf(bytesOf("no media"), "search Ogm signature fail"),
              "The plug-in does not take the file. No Ogg page begins within the first 1024 bytes, "
              "nor anywhere else.");
    OgmFile file;
    file.addJunk(2000);
    file.addHeader(kVideo, VideoHeader());
    EXPECT_EQ(refusalOf(file.bytes(), "search Ogm signature fail"),
              "The plug-in does not take the file. No Ogg page begins within the first 1024 bytes; "
              "the first page is at offset 2000.");
}

TEST(ExplainRefusal, SaysThatOnlyVorbisIsAnnounced) {
    OgmFile file;
    file.addHeader(kAudio, vorbisIdentificationHeader());
    EXPECT_EQ(refusalOf(file.bytes(), "Sniff:parseOgmHeader fail,isVorbisExist=1"),
              "The plug-in does not take the file. Within the first 1024 bytes only Vorbis headers "
              "are found, whose streams are left to other extractors, and no video or audio with "
              "an OGM header; the rest of the file announces none either.");
}

TEST(ExplainRefusal, SaysWhereVideoOrAudioIsAnnounced) {
    constexpr const char* kLine = "Sniff:parseOgmHeader fail,isVorbisExist=0";
    OgmFile late;
    late.addHeader(kOther, textHeader());
    late.addPages(kOther, std::vector<Bytes>(10, Bytes(200, 1)));
    late.addHeader(kVideo, VideoHeader());
    EXPECT_EQ(refusalOf(late.bytes(), kLine),
              "The plug-in does not take the file. No page within the first 1024 bytes announces "
              "video or audio; the first one that does is at offset " +
                      std::to_string(late.size() - 28 - kStreamHeaderSize) + ", too far on.");
    OgmFile hidden;
    hidden.add(OggPage(kOther).beginOfStream().packet(textHeader()).packet(Bytes(9, 1)));
    const size_t offset = hidden.addHeader(kVideo, VideoHeader());
    EXPECT_EQ(refusalOf(hidden.bytes(), kLine),
              "The plug-in does not take the file. No page within the first 1024 bytes announces "
              "video or audio; the one at offset " +
                      std::to_string(offset) +
                      " is missed, because the search steps from page to page by only the first "
                      "lacing value and ignores junk between pages.");
}

}  // namespace
}  // namespace ogmprobe::test::explain_streams_test
