// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/Judgement.h"

namespace ogmprobe::check {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> idsOf(const std::vector<Reason>& reasons) {
    std::vector<std::string> ids;
    for (const Reason& reason : reasons) {
        ids.push_back(reason.id);
    }
    return ids;
}

TrackDescription track(const std::string& mime, const std::vector<FormatEntry>& entries = {}) {
    TrackDescription description;
    description.mime = mime;
    description.width = 64;
    description.height = 48;
    description.sampleRate = 44100;
    description.channelCount = 2;
    description.entries = entries;
    classify(description);
    return description;
}

std::vector<std::string> formatComplaints(const TrackDescription& description) {
    std::vector<Reason> reasons;
    judgeFormat(description, reasons);
    return idsOf(reasons);
}

TEST(TrackJudgementTest, AFormatWithAllThatADecoderNeedsHasNoComplaint) {
    EXPECT_THAT(formatComplaints(track("video/avc")), IsEmpty());
    EXPECT_THAT(formatComplaints(track("audio/mpeg")), IsEmpty());
}

TEST(TrackJudgementTest, WhatADecoderIsSetUpWithMustBeThereAndAbove0) {
    TrackDescription video = track("video/avc");
    video.height = 0;
    EXPECT_THAT(formatComplaints(video), ElementsAre("size-missing"));
    TrackDescription audio = track("audio/mpeg");
    audio.sampleRate.reset();
    audio.channelCount = -1;
    EXPECT_THAT(formatComplaints(audio), ElementsAre("sample-rate-missing", "channels-missing"));
    EXPECT_THAT(formatComplaints(track("")), ElementsAre("mime-missing"));
}

TEST(TrackJudgementTest, AacNeedsAConfigurationOfAnyKind) {
    EXPECT_THAT(formatComplaints(track("audio/mp4a-latm")), ElementsAre("configuration-missing"));
    for (const char* name : {"esds", "csd-0", "is-adts"}) {
        EXPECT_THAT(formatComplaints(track("audio/mp4a-latm", {{name, "data"}})), IsEmpty())
                << name;
    }
}

TEST(TrackJudgementTest, VorbisNeedsBothItsHeaders) {
    EXPECT_THAT(formatComplaints(track("audio/vorbis", {{"csd-0", "data"}})),
                ElementsAre("configuration-missing"));
    EXPECT_THAT(formatComplaints(track("audio/vorbis", {{"csd-0", "data"}, {"csd-1", "data"}})),
                IsEmpty());
}

Loss loss(LossReason reason, uint64_t count) {
    Loss made;
    made.reason = reason;
    made.count = count;
    return made;
}

std::vector<Reason> lossReasons(uint64_t inFile, const std::vector<Loss>& losses) {
    Ledger ledger;
    ledger.countsFrames = true;
    ledger.inFile = inFile;
    ledger.losses = losses;
    std::vector<Reason> reasons;
    TrackDescription audio = track("audio/ac3");
    judgeLosses(ledger, audio, reasons);
    return reasons;
}

TEST(TrackJudgementTest, LostFramesAreAFaultFromThreeOnAndEndATrackFromMoreThanHalf) {
    EXPECT_THAT(idsOf(lossReasons(100, {})), IsEmpty());
    EXPECT_THAT(idsOf(lossReasons(100, {loss(LossReason::kNoSync, 2)})),
                ElementsAre("few-frames-lost"));
    EXPECT_THAT(idsOf(lossReasons(100, {loss(LossReason::kNoSync, 3)})),
                ElementsAre("frames-lost"));
    EXPECT_THAT(idsOf(lossReasons(100, {loss(LossReason::kNoSync, 50)})),
                ElementsAre("frames-lost"));
    EXPECT_THAT(idsOf(lossReasons(100, {loss(LossReason::kNoSync, 51)})),
                ElementsAre("frames-mostly-lost"));
}

TEST(TrackJudgementTest, LossesAreReportedWithTheirReasonsAndCountedByCodecAndRate) {
    const auto reasons =
            lossReasons(100, {loss(LossReason::kNoSync, 20), loss(LossReason::kInFrameBefore, 11)});
    ASSERT_EQ(reasons.size(), 1U);
    EXPECT_EQ(reasons[0].text,
              "31 of 100 frames are not returned: 20 dropped for lack of a sync word, 11 begun in "
              "the buffer before");
    EXPECT_EQ(reasons[0].value, 31);
    EXPECT_EQ(reasons[0].subject, "AC-3 at 44100 Hz");
}

TEST(TrackJudgementTest, WhatEveryFileLosesAtItsEndIsNoFault) {
    const auto reasons = lossReasons(100, {loss(LossReason::kLastPage, 40)});
    ASSERT_THAT(idsOf(reasons), ElementsAre("end-withheld"));
    EXPECT_EQ(reasons[0].verdict, Verdict::kPlays);
}

PlayedPackets packetsAt(const std::vector<std::pair<int64_t, bool>>& times) {
    PlayedPackets packets;
    for (const auto& [timeUs, isSync] : times) {
        Packet packet;
        packet.timeUs = timeUs;
        packet.isSync = isSync;
        packets.add(packet);
    }
    return packets;
}

TEST(TrackJudgementTest, VideoNeedsSyncFramesNotTooFarApart) {
    const auto reasons = [](const std::string& mime, const PlayedPackets& packets) {
        std::vector<Reason> found;
        judgeSeeking(track(mime), packets, found);
        return idsOf(found);
    };
    EXPECT_THAT(reasons("video/avc", packetsAt({{0, false}, {40000, false}})),
                ElementsAre("no-sync-frames"));
    EXPECT_THAT(reasons("video/avc", packetsAt({{0, true}, {15'000'000, true}})), IsEmpty());
    EXPECT_THAT(reasons("video/avc", packetsAt({{0, true}, {15'000'001, true}})),
                ElementsAre("sync-frames-far-apart"));
    EXPECT_THAT(reasons("video/avc", packetsAt({{0, true}, {15'000'001, false}})),
                ElementsAre("sync-frames-far-apart"));
    EXPECT_THAT(reasons("audio/mpeg", packetsAt({{0, false}})), IsEmpty());
    EXPECT_THAT(reasons("video/avc", {}), IsEmpty());
}

TEST(TrackJudgementTest, PicturesOfOneTimeAreAFaultWhereNothingIsShownForLongAfter) {
    const auto reasons = [](const PlayedPackets& packets) {
        std::vector<Reason> found;
        judgeTimes(track("video/avc"), packets, found);
        return idsOf(found);
    };
    EXPECT_THAT(reasons(packetsAt({{0, true}, {0, false}, {100'000, false}})), IsEmpty());
    EXPECT_THAT(reasons(packetsAt({{0, true}, {0, false}, {100'001, false}})),
                ElementsAre("pictures-share-times"));
    EXPECT_THAT(reasons(packetsAt({{0, true}, {200'000, false}})), IsEmpty());
}

}  // namespace
}  // namespace ogmprobe::check
