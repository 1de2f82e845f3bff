// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"

namespace ogmprobe::test::explain_damage_test {
namespace {

using namespace android::ogm::test;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kSample = "mpeg4_b_mp3.ogm";
constexpr const char* kDropped =
        "********** mPreGranulePosition is not vaild, Skip appending this item*************";
constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

/** The video page in the middle of the sample. */
constexpr size_t kPage = 10;

TEST(ExplainDamage, OfACapturePatternSkipsThePage) {
    Bytes bytes = sampleBytes(kSample);
    const auto offsets = pageOffsets(bytes);
    bytes[offsets[kPage]] = 'X';
    const auto finding =
            ExplainedFile(bytes).expectOne("junk-skipped",
                                           "5342 bytes from offset 59134 on are no Ogg page and "
                                           "are skipped; 1 page of track 0 is lost there.",
                                           "*** Skip 5342 bytes of junk from 59134 to reach page "
                                           "start ***");
    EXPECT_EQ(finding["bytes"], 5342);
    EXPECT_EQ(finding["time_us"], 1018775);
    EXPECT_EQ(finding["until_us"], 960000);
    EXPECT_THAT(ExplainedFile(bytes).run().out,
                HasSubstr("offset 59134, 0.960000 to 1.018775 s\n    5342 bytes"));
}

TEST(ExplainDamage, AfterTheLastPageIsReportedAsSuch) {
    OgmFile file = oneVideoOneAudioFile();
    const size_t junk = file.addJunk(10);
    ExplainedFile(file.bytes())
            .expectOne("junk-skipped",
                       "10 bytes from offset " + std::to_string(junk) +
                               " on are no Ogg page and are skipped; no page follows.",
                       "");
}

TEST(ExplainDamage, AtManyPlacesIsReportedAsAWhole) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addData(kVideo, 1, dataPacket(kSyncPacket, pattern(50, 1)));
    for (int i = 2; i < 14; ++i) {
        file.addJunk(5);
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
    }
    ExplainedFile(file.bytes())
            .expectOne("junk-skipped",
                       "60 bytes at 12 places are no Ogg pages and are skipped, the first at "
                       "offset 160, the last at offset 1084 (--pages lists all).",
                       "*** Skip 5 bytes of junk from 160 to reach page start ***");
}

TEST(ExplainDamage, OfAPageHeaderEndsPlayingBeforeIt) {
    Bytes bytes = sampleBytes(kSample);
    bytes[pageOffsets(bytes)[kPage] + 4] = 1;
    const ExplainedFile file(bytes);
    file.expectOne("page-header-damaged",
                   "The header of the page at offset 59134 has version 1, so it cannot be read; a "
                   "search for streams or for the duration ends here. Playing ends before it: the "
                   "search for the next page of a stream cannot pass it.",
                   "Version Error, verison should be 0 but 1");
    const auto unread = file.findings("pages-not-read");
    ASSERT_EQ(unread.size(), 2U);
    EXPECT_EQ(unread[0]["text"],
              "The last 24 pages of track 0, with 132 packets, are not read: reading ended at the "
              "damaged page header at offset 59134.");
    EXPECT_EQ(unread[0]["log"]["text"],
              "getNextGranulePosition:Cannot read a page header, at 0x0000E6FE");
    file.expectNone("pages-missing");
}

/** After pages without a track, which are skipped without a look-up of the next page. */
OgmFile damagedAfterPagesWithoutTrack(size_t pages) {
    OgmFile file;
    VideoHeader refused;
    refused.subtype = "XVID";
    file.addHeader(kVideo, refused);
    file.addHeader(kAudio, AudioHeader());
    for (size_t i = 1; i <= pages; ++i) {
        file.addPages(kVideo, {filled(255, 1), filled(255, 1)}, i);
    }
    file.add(OggPage(kVideo).flags(0x10).packet(filled(255, 1)));
    return file;
}

TEST(ExplainDamage, OfAPageHeaderAfterPagesWithoutATrackLeadsBack) {
    const ExplainedFile file(damagedAfterPagesWithoutTrack(2).bytes());
    file.expectOne("page-header-damaged",
                   "The header of the page at offset 1298 has undefined flags (0x10), so it cannot "
                   "be read; a search for streams or for the duration ends here. Playing continues "
                   "some 10000 bytes before it and cuts packets there by the lacing of the page "
                   "before: garbage is returned, or packets are repeated.",
                   "Flag only bits 0-2 are defined in version 0");
}

TEST(ExplainDamage, ThatPlayingDoesNotReachIsReportedAsSuch) {
    Bytes bytes = sampleBytes(kSample);
    const auto offsets = pageOffsets(bytes);
    bytes[offsets[kPage] + 4] = 1;
    bytes[offsets[kPage + 5] + 5] = 0x80;
    const auto found = ExplainedFile(bytes).findings("page-header-damaged");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1]["text"], "The header of the page at offset " +
                                        std::to_string(offsets[kPage + 5]) +
                                        " has undefined flags (0x80), so it cannot be read. "
                                        "Playing did not reach it.");
}

TEST(ExplainDamage, ThatAlwaysLeadsBackIsAnEndlessReading) {
    const ExplainedFile file(damagedAfterPagesWithoutTrack(40).bytes());
    const ProcessResult result = file.run();
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("the extractor never ends: it returns to the page at "
                                      "offset "));
    const auto found = file.findings("extractor-ended");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                StartsWith("Playing did not end: the extractor never ends: it returns to "));
}

TEST(ExplainDamage, OfTheFilesEndIsReportedWithTheMissingBytes) {
    const Bytes bytes = sampleBytes(kSample);
    const auto finding =
            ExplainedFile(head(bytes, bytes.size() - 1000))
                    .expectOne("file-cut-off",
                               "The file ends within the page at offset 199915: at least 675 of "
                               "its 6213 bytes are missing.",
                               "");
    EXPECT_EQ(finding["bytes"], 675);
}

TEST(ExplainDamage, OfAPagesBytesIsReportedByItsChecksum) {
    Bytes bytes = sampleBytes(kSample);
    const auto offsets = pageOffsets(bytes);
    bytes[offsets[1] + 80] ^= 1;
    bytes[offsets[kPage] + 60] ^= 1;
    const auto found = ExplainedFile(bytes).findings("checksum-wrong");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]["text"],
              "The page of track 1 at offset 85 has a wrong checksum: the plug-in does not check "
              "it.");
    EXPECT_EQ(found[1]["text"],
              "The page of track 0 at offset 59134 has a wrong checksum: the plug-in does not "
              "check it, so damaged data is returned unchanged.");
}

TEST(ExplainDamage, OfManyPagesIsReportedAsAWhole) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (int i = 1; i <= 12; ++i) {
        file.add(OggPage(kVideo).granule(i).packet(pattern(20, i)).checksum(1));
    }
    ExplainedFile(file.bytes())
            .expectOne("checksum-wrong",
                       "12 of 13 pages have a wrong checksum, the first at offset 81: the plug-in "
                       "does not check it, so damaged data is returned unchanged.",
                       "");
}

TEST(ExplainDamage, MissingPagesAreReportedByTheirNumbers) {
    Bytes bytes = sampleBytes(kSample);
    const auto offsets = pageOffsets(bytes);
    bytes.erase(bytes.begin() + static_cast<ptrdiff_t>(offsets[kPage]),
                bytes.begin() + static_cast<ptrdiff_t>(offsets[kPage + 1]));
    const auto finding = ExplainedFile(bytes).expectOne("pages-missing",
                                                        "Before offset 59134, 1 page of track 0 is "
                                                        "missing.",
                                                        "");
    EXPECT_EQ(finding["time_us"], 640000);
    EXPECT_EQ(finding["until_us"], 960000);
}

TEST(ExplainDamage, PacketsAreDroppedWhereTheGranuleFalls) {
    const Bytes bytes = sampleBytes(kSample);
    const size_t page = pageOffsets(bytes)[kPage];
    ExplainedFile(withGranule(bytes, page, 1000))
            .expectOne("packets-dropped",
                       "2 packets of track 0 on the page at offset 64476 are dropped: the granule "
                       "position falls from 1000 to 24 at offset 64476, and packets are used only "
                       "once it rises again.",
                       kDropped);
    ExplainedFile(withGranule(bytes, page, ~uint64_t{0}))
            .expectOne("packets-dropped",
                       "2 packets of track 0 on the page at offset 64476 are dropped: the granule "
                       "position falls from -1 to 24 at offset 64476 (-1, for a page on which no "
                       "packet ends, is taken as the largest), and packets are used only once it "
                       "rises again.",
                       kDropped);
}

/** A file with one audio track and one packet per page. */
OgmFile audioFile(const std::string& tag, const std::vector<Bytes>& payloads) {
    OgmFile file;
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = 44100;
    file.addHeader(kAudio, header);
    uint64_t granule = 0;
    for (const Bytes& payload : payloads) {
        file.addData(kAudio, granule += 1152, audioPacket(payload));
    }
    return file;
}

void expectAudioLoss(const OgmFile& file, const std::string& id, const std::string& text,
                     const std::string& line) {
    const auto found = ExplainedFile(file.bytes()).findings(id);
    ASSERT_EQ(found.size(), 1U) << ExplainedFile(file.bytes()).document().dump(1);
    EXPECT_THAT(found[0]["text"].get<std::string>(), HasSubstr(text));
    EXPECT_THAT(found[0]["log"]["text"].get<std::string>(), StartsWith(line));
}

TEST(ExplainDamage, OfAudioFramesIsReportedWithItsKind) {
    std::vector<Bytes> mp3(20, MpegAudioFrame().bytes());
    mp3[5] = filled(100, 0x11);
    expectAudioLoss(audioFile("0055", mp3), "audio-without-sync",
                    ": no beginning of a frame (no sync word), so all is dropped.",
                    "appendAudioData FAIL!");
    mp3.assign(20, MpegAudioFrame().bytes());
    MpegAudioFrame other;
    other.samplingRateIndex = 1;
    mp3[8] = other.bytes();
    mp3[9] = mp3[8];
    expectAudioLoss(audioFile("0055", mp3), "audio-unlike-first-frame",
                    ": no frame like the first one of the track, so the bytes so far are dropped.",
                    "not found mMP3Header,skip");
    mp3.assign(20, MpegAudioFrame().bytes());
    mp3[8][2] &= 0x0f;
    expectAudioLoss(audioFile("0055", mp3), "audio-frame-without-size",
                    ": a frame header without a valid size, so the bytes so far are dropped.",
                    "GetMPEGAudioFrameSize fail");
    mp3.assign(10, joined({{0xff, 0xfb, 0x00, 0x00}, filled(20000, 0x55)}));
    expectAudioLoss(audioFile("0055", mp3), "audio-unconfirmed",
                    ": no frames that follow each other, so the bytes so far are dropped.",
                    "findMP3Header fail size>131072");
    std::vector<Bytes> ac3(20, Ac3Frame().bytes());
    ac3[5][4] |= 0xc0;
    expectAudioLoss(audioFile("2000", ac3), "audio-frame-without-size",
                    ": a frame header without a valid sampling rate, so the frame is dropped.",
                    "fscod=3");
    ac3.assign(20, Ac3Frame().bytes());
    Ac3Frame unknown;
    unknown.bitStreamId = 20;
    ac3[5] = unknown.bytes();
    expectAudioLoss(audioFile("2000", ac3), "audio-frame-refused",
                    ": a frame of an unknown version (bsid), which is dropped.",
                    "[dequeueAccessUnitAC3]***wrong bsid:20***");
}

}  // namespace
}  // namespace ogmprobe::test::explain_damage_test
