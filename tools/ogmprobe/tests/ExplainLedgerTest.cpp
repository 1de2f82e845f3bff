// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"

namespace ogmprobe::test::explain_ledger_test {
namespace {

using namespace android::ogm::test;
using testing::HasSubstr;
using testing::StartsWith;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
/** First byte of an audio packet for which the plug-in and the format have the same header size. */
constexpr uint8_t kUsualAudio = 0x80;

void expectBalance(const nlohmann::json& ledger) {
    auto counted = ledger["handed_out"].get<uint64_t>();
    for (const auto& loss : ledger["losses"]) {
        counted += loss["count"].get<uint64_t>();
    }
    EXPECT_EQ(counted, ledger["in_file"]);
    EXPECT_EQ(ledger["unexplained"], 0);
}

/** The ledger of the stream. Checks that it balances and that each loss has a reason. */
nlohmann::json ledgerOf(const Bytes& bytes, uint32_t serial) {
    const auto document = ExplainedFile(bytes).document();
    for (const auto& stream : document["streams"]) {
        if (stream["serial"] == serial) {
            expectBalance(stream["ledger"]);
            return stream["ledger"];
        }
    }
    ADD_FAILURE() << "no such stream";
    return {};
}

uint64_t lost(const nlohmann::json& ledger, const std::string& reason) {
    for (const auto& loss : ledger["losses"]) {
        if (loss["reason"] == reason) {
            return loss["count"].get<uint64_t>();
        }
    }
    return 0;
}

AudioHeader audioHeader(const std::string& tag, uint64_t rate = 44100) {
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = rate;
    header.channels = 2;
    return header;
}

/** An audio stream with one packet per page, whose granule positions rise by `samples`. */
OgmFile audioFile(const AudioHeader& header, const std::vector<Bytes>& packets,
                  uint64_t samples = 1536) {
    OgmFile file;
    file.addHeader(kAudio, header);
    for (size_t i = 0; i < packets.size(); ++i) {
        file.addData(kAudio, (i + 1) * samples, audioPacket(packets[i], kUsualAudio));
    }
    return file;
}

std::vector<Bytes> mpegFrames(size_t count, MpegAudioFrame frame = {}) {
    std::vector<Bytes> frames;
    for (size_t i = 0; i < count; ++i) {
        frame.seed = static_cast<uint32_t>(i + 1);
        frames.push_back(frame.bytes());
    }
    return frames;
}

std::vector<Bytes> ac3Frames(size_t count, Ac3Frame frame) {
    std::vector<Bytes> frames;
    for (size_t i = 0; i < count; ++i) {
        frame.seed = static_cast<uint32_t>(i + 1);
        frames.push_back(frame.bytes());
    }
    return frames;
}

TEST(ExplainLedger, BalancesForEveryStreamOfEverySample) {
    for (const char* name :
         {"divx3_pcm16", "h264_mp3vbr", "long_mpeg4_mp3", "mjpeg", "mpeg2_ac3", "mpeg4_2997_ac3",
          "mpeg4_b_mp3", "mpeg4_mp3_ac3", "mpeg4_pcm8", "mpeg4_vorbis", "xvid_refused_mp3"}) {
        SCOPED_TRACE(name);
        const auto document = ExplainedFile(sampleBytes(std::string(name) + ".ogm")).document();
        ASSERT_FALSE(document["streams"].empty());
        for (const auto& stream : document["streams"]) {
            const auto& ledger = stream["ledger"];
            expectBalance(ledger);
            EXPECT_EQ(ledger["changed"], 0);
            EXPECT_EQ(ledger["repeated"], 0);
            EXPECT_EQ(ledger["foreign"], 0);
            if (!stream["track"].is_null()) {
                EXPECT_EQ(ledger["handed_out"], stream["buffers"]);
            }
        }
    }
}

TEST(ExplainLedger, SaysWhereEachLossIs) {
    const OgmFile file = videoAndAudio(100, 20);
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(ledger["unit"], "packet");
    EXPECT_EQ(ledger["in_file"], 100);
    EXPECT_EQ(lost(ledger, "stays-queued"), 1U);
    EXPECT_EQ(lost(ledger, "last-page"), 1U);
    const auto offsets = pageOffsets(file.bytes());
    for (const auto& loss : ledger["losses"]) {
        if (loss["reason"] == "reading-stopped") {
            EXPECT_EQ(loss["count"], 79);
            EXPECT_EQ(loss["offset"], offsets[2 + 40] + 28);
            EXPECT_EQ(loss["last_offset"], offsets[offsets.size() - 2] + 28);
            EXPECT_EQ(loss["time_us"], 21 * 40000);
        }
    }
}

TEST(ExplainLedger, SaysNothingToExplainOnlyIfThereIsNothing) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (int i = 1; i <= 200; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(4000, i)));
    }
    const std::string out = ExplainedFile(file.bytes()).run().out;
    EXPECT_THAT(out, StartsWith("nothing to explain\n"));
    EXPECT_THAT(out, HasSubstr("\ntrack 0 (video H264): 200 packets in the file = 198 returned + "
                               "1 left in the queue + 1 on the stream's last page\n"));
}

TEST(ExplainLedger, CountsThePacketsOfAStreamWithoutATrack) {
    const auto ledger = ledgerOf(sampleBytes("mpeg4_vorbis.ogm"), 1);
    EXPECT_EQ(ledger["in_file"], 262);
    EXPECT_EQ(lost(ledger, "no-track"), 262U);
    EXPECT_EQ(ledger["losses"][0]["text"], "Vorbis");
}

TEST(ExplainLedger, CountsAPacketOverSeveralPagesOnce) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.add(OggPage(kVideo).granule(1).openPacket(Bytes(510, 7)));
    file.add(OggPage(kVideo).granule(1).continued().openPacket(Bytes(255, 8)));
    file.add(OggPage(kVideo).granule(1).continued().packet(Bytes(9, 9)));
    for (int i = 2; i <= 20; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i)));
    }
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(ledger["in_file"], 20);
    EXPECT_EQ(ledger["handed_out"], 18);
    EXPECT_EQ(ledger["changed"], 0);
}

/** The file in a fuzzing input, without the input's calls. */
Bytes fuzzedFile(const std::string& name) {
    Bytes bytes = sampleBytes("../../../fuzz/corpus/ogm_extractor_fuzzer/" + name);
    const size_t faults = bytes.at(0) >> 2 & 3U;
    const size_t calls = 4 + 4 * faults;
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<int64_t>(calls + 1 + 4 * bytes[calls]));
    return bytes;
}

// After junk a look-up begins some bytes too early, here in a packet whose size is that of the
// first read of a page header.
TEST(ExplainLedger, APacketThatASearchMeetsIsNotRegardedAsRead) {
    const Bytes bytes = fuzzedFile("330ab538ff7790fb8917a7caa2bf28430a57389e");
    const auto ledger = ledgerOf(bytes, kVideo);
    EXPECT_EQ(lost(ledger, "last-page"), 1U);
    EXPECT_EQ(lost(ledger, "reading-stopped"), 1U);
}

TEST(ExplainLedger, PacketsDroppedAtAFallingGranulePositionAreReported) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (const int granule : {1, 2, 3, 4, 5, 6, 90, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}) {
        file.addData(kVideo, granule, dataPacket(kSyncPacket, pattern(50, granule)));
    }
    EXPECT_EQ(lost(ledgerOf(file.bytes(), kVideo), "granule-fell"), 1U);
}

TEST(ExplainLedger, TheTailOfADroppedPacketIsReturnedAfterThePacketBefore) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (int i = 1; i <= 6; ++i) {
        file.addData(kVideo, i + 10, dataPacket(kSyncPacket, pattern(50, i)));
    }
    file.add(OggPage(kVideo).granule(3).openPacket(Bytes(255, 7)));
    file.add(OggPage(kVideo).granule(3).continued().packet(Bytes(9, 9)));
    for (int i = 4; i <= 20; ++i) {
        file.addData(kVideo, i, dataPacket(kSyncPacket, pattern(50, i + 30)));
    }
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(ledger["changed"], 1);
    EXPECT_EQ(lost(ledger, "granule-fell"), 1U);
    const auto found = ExplainedFile(file.bytes()).findings("foreign-tail");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                StartsWith("1 packet of track 0 is returned with bytes of another packet"));
}

TEST(ExplainLedger, APacketThatCannotBeReturnedEndsItsTrack) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (int i = 1; i <= 40; ++i) {
        file.addData(kVideo, i, i == 20 ? Bytes() : dataPacket(kSyncPacket, pattern(50, i)));
    }
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(ledger["handed_out"], 19);
    EXPECT_EQ(lost(ledger, "packet-without-content"), 1U);
    EXPECT_GT(lost(ledger, "behind-stuck-packet"), 0U);
    ExplainedFile(file.bytes())
            .expectOne("packet-without-content",
                       "1 packet of track 0 is not returned: the packet is shorter than the "
                       "header that the plug-in removes, so it cannot be returned, stays at the "
                       "head of the queue, and the track ends there.",
                       "");
}

TEST(ExplainLedger, FewerThanTenPacketsWaitAfterTheEndThatIsReportedFirst) {
    const OgmFile file = videoAndAudio(8, 0);
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(ledger["handed_out"], 0);
    EXPECT_EQ(lost(ledger, "end-reported-first"), 6U);
    EXPECT_THAT(ExplainedFile(file.bytes()).findings("end-reported-first")[0]["text"],
                "6 packets of track 0 are not returned: the read that queues them reaches the end "
                "of the file with none ready, and reports the end of the stream; only a reader "
                "that continues gets them.");
}

TEST(ExplainLedger, AudioPacketHeadersOfAnotherSizeAreReported) {
    OgmFile file;
    file.addHeader(kAudio, audioHeader("00FF"));
    for (int i = 1; i <= 20; ++i) {
        file.addData(kAudio, i * 1024, audioPacket(pattern(50, i), i == 5 ? 0x01 : kUsualAudio));
    }
    const auto finding =
            ExplainedFile(file.bytes())
                    .expectOne("audio-packet-header",
                               "1 packet of track 0 is returned with too few or too many bytes: "
                               "the plug-in's rule for the size of an audio packet's header (3 to "
                               "10 bytes) differs from the format's.",
                               "");
    EXPECT_EQ(finding["offset"], pageOffsets(file.bytes())[5] + 28);
}

TEST(ExplainLedger, TheFirstMpegAudioFrameIsMissed) {
    const OgmFile file = audioFile(audioHeader("0055"), mpegFrames(40), 1152);
    const auto ledger = ledgerOf(file.bytes(), kAudio);
    EXPECT_EQ(ledger["unit"], "frame");
    EXPECT_EQ(ledger["in_file"], 40);
    EXPECT_EQ(lost(ledger, "first-audio-frame-lost"), 1U);
    ExplainedFile(file.bytes())
            .expectOne("first-audio-frame-lost",
                       "1 frame of track 0 is not returned: the first frame is dropped when the "
                       "second one confirms the stream's header, so the sound begins one frame "
                       "late.",
                       "");
}

TEST(ExplainLedger, TheFirstMpegAudioFrameIsMissedBeforeDroppedOnesToo) {
    OgmFile file;
    file.addHeader(kAudio, audioHeader("0055"));
    const auto frames = mpegFrames(40);
    for (size_t i = 0; i < frames.size(); ++i) {
        const uint64_t granule = i == 0 ? 1152 * 9 : (i + 1) * 1152;
        file.addData(kAudio, granule, audioPacket(frames[i], kUsualAudio));
    }
    const auto ledger = ledgerOf(file.bytes(), kAudio);
    EXPECT_EQ(lost(ledger, "granule-fell"), 1U);
    EXPECT_EQ(lost(ledger, "first-audio-frame-lost"), 1U);
}

TEST(ExplainLedger, FramesAfterAChangeOfTheSamplingRateAreMissed) {
    auto frames = mpegFrames(20);
    MpegAudioFrame other;
    other.samplingRateIndex = 1;
    for (const Bytes& frame : mpegFrames(20, other)) {
        frames.push_back(frame);
    }
    const auto ledger = ledgerOf(audioFile(audioHeader("0055"), frames, 1152).bytes(), kAudio);
    EXPECT_EQ(ledger["in_file"], 40);
    EXPECT_GE(lost(ledger, "audio-rate-change"), 18U);
}

TEST(ExplainLedger, At44100HertzEverySecondAc3FrameIsMissed) {
    Ac3Frame frame;
    frame.sampleRateCode = 1;
    const OgmFile file = audioFile(audioHeader("2000"), ac3Frames(60, frame));
    const auto ledger = ledgerOf(file.bytes(), kAudio);
    EXPECT_EQ(ledger["in_file"], 60);
    EXPECT_EQ(ledger["changed"], ledger["handed_out"]);
    EXPECT_GE(lost(ledger, "inside-frame-before"), 28U);
    EXPECT_EQ(ExplainedFile(file.bytes()).findings("ac3-frame-size").size(), 1U);
    EXPECT_EQ(ExplainedFile(file.bytes()).findings("inside-frame-before").size(), 1U);
}

TEST(ExplainLedger, Ac3FramesOfUsualSizesComeOut) {
    const auto ledger =
            ledgerOf(audioFile(audioHeader("2000", 48000), ac3Frames(60, {})).bytes(), kAudio);
    EXPECT_EQ(ledger["handed_out"], 58);
    EXPECT_EQ(ledger["changed"], 0);
}

TEST(ExplainLedger, APacketWithoutAFrameIsNotCounted) {
    std::vector<Bytes> packets;
    for (uint8_t i = 1; i <= 20; ++i) {
        packets.push_back(Bytes(40, i));
    }
    const OgmFile file = audioFile(audioHeader("2000"), packets);
    EXPECT_EQ(ledgerOf(file.bytes(), kAudio)["in_file"], 0);
    EXPECT_THAT(ExplainedFile(file.bytes()).findings("track-without-packets")[0]["text"],
                "Track 0 returns no packet: nothing on its 20 pages is a packet or frame.");
}

TEST(ExplainLedger, ADtsFrameWithASyncWordInsideIsCutInTwo) {
    std::vector<Bytes> frames;
    for (uint32_t i = 1; i <= 30; ++i) {
        // FSIZE 255: 256 bytes.
        Bytes frame = dtsFrame(DtsForm::kCore16BitBigEndian, 256, i);
        frame[5] = 0xF0;
        frame[6] = 0x0F;
        frame[7] = static_cast<uint8_t>(0xF0 | (frame[7] & 0x0F));
        if (i == 10) {
            const Bytes sync = head(dtsFrame(DtsForm::kCore16BitBigEndian, 8), 4);
            std::copy(sync.begin(), sync.end(), frame.begin() + 100);
        }
        frames.push_back(frame);
    }
    const OgmFile file = audioFile(audioHeader("2001"), frames, 512);
    const auto ledger = ledgerOf(file.bytes(), kAudio);
    EXPECT_EQ(ledger["in_file"], 30);
    EXPECT_EQ(ledger["changed"], 1);
    EXPECT_EQ(ledger["foreign"], 1);
    EXPECT_EQ(lost(ledger, "waits-for-bytes"), 1U);
    EXPECT_EQ(ExplainedFile(file.bytes()).findings("dts-frame-cut").size(), 1U);
    EXPECT_EQ(ExplainedFile(file.bytes()).findings("dts-frames-late").size(), 1U);
}

TEST(ExplainLedger, BytesThatOnlyBeginLikeAFrameAreCalledAFalseFrame) {
    std::vector<Bytes> frames = ac3Frames(60, {});
    constexpr size_t kDamaged = 20;
    constexpr ptrdiff_t kPlace = 50;
    std::fill(frames[kDamaged].begin(), frames[kDamaged].begin() + kPlace, 0);
    std::copy_n(frames[0].begin(), 10, frames[kDamaged].begin() + kPlace);
    const ExplainedFile file(audioFile(audioHeader("2000", 48000), frames).bytes());
    const auto found = file.findings("false-frames");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["text"],
              "1 buffer of track 0 holds no frame of the file: bytes of its packets begin with a "
              "sync word where no frame follows another, and were cut as if one did.");
    EXPECT_GT(found[0]["offset"], 0);
    file.expectNone("buffers-not-in-file");
}

TEST(ExplainLedger, OfAFileThatIsNotAcceptedNothingIsReturned) {
    OgmFile file;
    file.addHeader(kVideo, textHeader());
    file.addPages(kVideo, {Bytes(9, 1), Bytes(9, 2)});
    const auto ledger = ledgerOf(file.bytes(), kVideo);
    EXPECT_EQ(lost(ledger, "no-track"), 2U);
}

TEST(ExplainLedger, BytesThatAreSkippedAtDamageHaveTheirReason) {
    Bytes bytes = sampleBytes("mpeg4_b_mp3.ogm");
    bytes[pageOffsets(bytes)[13] + 5] = 0x80;
    ledgerOf(bytes, 0);
    ledgerOf(bytes, 1);
}

}  // namespace
}  // namespace ogmprobe::test::explain_ledger_test
