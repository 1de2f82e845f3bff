// SPDX-License-Identifier: Apache-2.0
#include <ElementaryStreams.h>
#include <OgmStreamHeaders.h>

#include <sstream>

#include "ExplainedFile.h"

namespace ogmprobe::test::explain_times_test {
namespace {

using namespace android::ogm::test;
using testing::StartsWith;

constexpr uint32_t kVideo = 1;

/** A file with a page for each granule position. */
Bytes pagesWith(const std::vector<uint64_t>& granules) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    for (size_t i = 0; i < granules.size(); ++i) {
        file.addData(kVideo, granules[i],
                     dataPacket(kSyncPacket, pattern(50, static_cast<uint32_t>(i))));
    }
    return file.bytes();
}

TEST(ExplainTimes, ThoseBelowZeroAreReported) {
    const auto found = ExplainedFile(sampleBytes("mpeg4_b_mp3.ogm")).findings("negative-times");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["text"],
              "2 buffers of track 0 have a time below 0, down to -0.040000 s, the first of them "
              "number 3: B pictures are moved one picture back from the time of their page.");
    EXPECT_EQ(found[0]["time_us"], -40000);
    EXPECT_FALSE(found[0]["usual"]);
}

TEST(ExplainTimes, ThoseOfOnePageAreEqualAsAlways) {
    const ExplainedFile file(sampleBytes("divx3_pcm16.ogm"));
    const auto found = file.findings("page-shares-time");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_TRUE(found[0]["usual"]);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                testing::EndsWith("because the packets of one page share its time; the first is "
                                  "number 2."));
    file.expectNone("times-stand-still");
}

TEST(ExplainTimes, ThoseOfSeveralPagesWithOneGranulePositionAreReported) {
    std::vector<uint64_t> granules;
    for (uint64_t i = 1; i <= 30; ++i) {
        granules.push_back(i < 10 || i > 12 ? i : 10);
    }
    const auto found = ExplainedFile(pagesWith(granules)).findings("times-stand-still");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(
            found[0]["text"],
            "2 buffers of track 0 have the time of the one before from another page; the first is "
            "number 11.");
}

TEST(ExplainTimes, ThoseThatStepBackAreReported) {
    std::vector<uint64_t> granules;
    for (uint64_t i = 1; i <= 30; ++i) {
        granules.push_back(i < 15 ? i + 100 : i);
    }
    const auto found = ExplainedFile(pagesWith(granules)).findings("times-step-back");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                StartsWith("13 buffers of track 0 have an earlier time than a buffer before, "
                           "by more than"));
}

TEST(ExplainTimes, PicturesStoredOutOfOrderDoNotStepBack) {
    VideoHeader header;
    header.subtype = "FMP4";
    OgmFile file;
    file.addHeader(kVideo, header);
    uint64_t granule = 0;
    const auto add = [&](uint32_t type, const Bytes& front) {
        ++granule;
        file.addData(kVideo, granule,
                     dataPacket(type == 0 ? kSyncPacket : kPlainPacket,
                                joined({front, videoObjectPlane(type, 60,
                                                                static_cast<uint32_t>(granule))})));
    };
    add(0, VideoObjectLayer().bytes());
    for (int i = 0; i < 10; ++i) {
        add(1, {});
        add(2, {});
        add(2, {});
    }
    const ExplainedFile explained(file.bytes());
    explained.expectNone("times-step-back");
    explained.expectNone("negative-times");
    explained.expectNone("times-stand-still");
}

/** A file with a page for each frame of a stream with this format tag. */
Bytes audioPages(const std::string& tag, uint64_t rate, uint64_t samples,
                 const std::vector<Bytes>& frames) {
    constexpr uint8_t kUsualAudio = 0x80;
    AudioHeader header;
    header.subtype = tag;
    header.samplesPerUnit = rate;
    header.channels = 2;
    OgmFile file;
    file.addHeader(kVideo, header);
    for (size_t i = 0; i < frames.size(); ++i) {
        file.addData(kVideo, (i + 1) * samples, audioPacket(frames[i], kUsualAudio));
    }
    return file.bytes();
}

std::vector<Bytes> ac3Frames() {
    std::vector<Bytes> frames;
    Ac3Frame frame;
    for (uint32_t i = 1; i <= 60; ++i) {
        frame.seed = i;
        frames.push_back(frame.bytes());
    }
    return frames;
}

TEST(ExplainTimes, OfAudioTheyAreThePagesAfterFramesThatAreDropped) {
    constexpr size_t kVersion = 5;
    constexpr size_t kDropped = 20;
    constexpr int64_t kFrameUs = 32000;
    std::vector<Bytes> frames = ac3Frames();
    for (size_t i = kDropped; i < kDropped + 4; ++i) {
        frames[i][kVersion] = 0xFF;
    }
    const ExplainedFile file(audioPages("2000", 48000, 1536, frames));
    EXPECT_EQ(file.findings("audio-frame-refused").size(), 1U);
    std::istringstream lines(runProbe({"packets", "--json", file.path()}).out);
    std::vector<int64_t> times;
    for (std::string line; std::getline(lines, line);) {
        const auto record = nlohmann::json::parse(line);
        if (record["type"] == "buffer") {
            times.push_back(record["time_us"].get<int64_t>());
        }
    }
    ASSERT_GT(times.size(), kDropped + 10);
    EXPECT_EQ(times[kDropped] - times[kDropped - 1], 5 * kFrameUs);
    EXPECT_EQ(times[kDropped + 10] - times[kDropped], 10 * kFrameUs);
}

}  // namespace
}  // namespace ogmprobe::test::explain_times_test
