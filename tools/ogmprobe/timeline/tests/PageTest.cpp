// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "Drawing.h"
#include "Lanes.h"
#include "Packing.h"
#include "UnpackedPage.h"

namespace ogmprobe::timeline::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr size_t kLargestPage = 2000000;
constexpr const char* kGap = "<path class=\"gap\"";
constexpr const char* kRepeated = "<path class=\"repeated\"";
constexpr const char* kBackward = "<path class=\"backward\"";

std::string pageOf(const Timeline& timeline) {
    return pageDocument(Chart(timeline));
}

std::string drawingOf(const Timeline& timeline) {
    return drawingDocument(Chart(timeline));
}

Timeline picturesAt(const std::vector<int64_t>& timesUs) {
    return timelineOf({laneOf(TrackKind::kVideo, packetsAt(timesUs))});
}

size_t countOf(const std::string& part, const std::string& text) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(TimelineDrawing, MarksNothingInASteadyTrack) {
    const std::string drawing = drawingOf(picturesAt({0, 40000, 80000, 120000}));
    EXPECT_THAT(drawing, HasSubstr("<path class=\"bar type-U\""));
    EXPECT_THAT(drawing, Not(HasSubstr(kGap)));
    EXPECT_THAT(drawing, Not(HasSubstr(kRepeated)));
    EXPECT_THAT(drawing, Not(HasSubstr(kBackward)));
}

TEST(TimelineDrawing, MarksAGap) {
    EXPECT_THAT(drawingOf(picturesAt({0, 40000, 80000, 160000, 200000})), HasSubstr(kGap));
}

TEST(TimelineDrawing, DrawsAGapOverThePacketsOfItsBin) {
    auto packets = pictures(90000);
    packets.erase(packets.begin() + 45001, packets.begin() + 45004);
    const std::string drawing = drawingOf(timelineOf({laneOf(TrackKind::kVideo, packets)}));
    ASSERT_THAT(drawing, HasSubstr(kGap));
    EXPECT_GT(drawing.find(kGap), drawing.rfind("<path class=\"bar"));
}

TEST(TimelineDrawing, MarksEqualTimes) {
    EXPECT_THAT(drawingOf(picturesAt({0, 40000, 40000, 120000})), HasSubstr(kRepeated));
}

TEST(TimelineDrawing, MarksBackwardSteps) {
    EXPECT_THAT(drawingOf(picturesAt({0, 80000, 40000, 120000})), HasSubstr(kBackward));
}

TEST(TimelineDrawing, MarksSyncFramesWhereTheyAreTheException) {
    const Timeline video = timelineOf({laneOf(TrackKind::kVideo, pictures(24))});
    EXPECT_THAT(drawingOf(video), HasSubstr("<path class=\"sync\""));
    Timeline audio = timelineOf({laneOf(TrackKind::kAudio, packetsAt({0, 20000, 40000}))});
    for (PacketPoint& packet : audio.lanes[0].packets) {
        packet.isSync = true;
    }
    EXPECT_THAT(drawingOf(audio), Not(HasSubstr("<path class=\"sync\"")));
}

TEST(TimelineDrawing, ExplainsOnlyWhatItShows) {
    const std::string steady = drawingOf(picturesAt({0, 40000, 80000}));
    EXPECT_THAT(steady, Not(HasSubstr(">gap<")));
    EXPECT_THAT(steady, Not(HasSubstr(">I picture<")));
    EXPECT_THAT(drawingOf(timelineOf({laneOf(TrackKind::kVideo, pictures(24))})),
                HasSubstr(">I picture<"));
}

TEST(TimelineDrawing, ShowsWhereSeeksLandedAndWhatTheyRead) {
    Timeline timeline = timelineOf({laneOf(TrackKind::kVideo, pictures(24))});
    EXPECT_THAT(drawingOf(timeline), Not(HasSubstr("class=\"landing\"")));
    Seek seek{500000, 480000, true, {}};
    seek.cost.add({1000, 100, 100});
    timeline.seeks = {seek, {900000, std::nullopt, false, {}}};
    const std::string drawing = drawingOf(timeline);
    EXPECT_EQ(countOf("class=\"target\"", drawing), 2U);
    EXPECT_EQ(countOf("class=\"landing\"", drawing), 1U);
    EXPECT_EQ(countOf("<path class=\"seek\"", drawing), 1U);
}

TEST(TimelinePage, ShowsFailures) {
    Timeline timeline = picturesAt({0, 40000});
    EXPECT_THAT(pageOf(timeline), Not(HasSubstr("What could be read is drawn.")));
    timeline.failures = {"the extractor died in read: CHECK(a < b) failed."};
    for (const std::string& text : {pageOf(timeline), drawingOf(timeline)}) {
        EXPECT_THAT(text, HasSubstr("the extractor died in read: CHECK(a &lt; b) failed."));
        EXPECT_THAT(text, HasSubstr("What could be read is drawn."));
    }
}

TEST(TimelinePage, NamesTheProgramThePluginAndTheFile) {
    Timeline timeline = picturesAt({0, 40000});
    timeline.origin = {"probe 1.0", "Plug-in", 0x123, ""};
    EXPECT_THAT(pageOf(timeline),
                HasSubstr("Made by probe 1.0 with the plug-in Plug-in, of 2 bytes with the digest "
                          "0000000000000123 (FNV-1a)."));
    timeline.origin.date = "2031-02-03";
    EXPECT_THAT(pageOf(timeline), HasSubstr("Made on 2031-02-03 by probe"));
}

TEST(TimelinePage, DoesNotCallATrackWholeThatLostPackets) {
    Timeline timeline = picturesAt({0, 40000});
    EXPECT_THAT(pageOf(timeline), HasSubstr(">none<"));
    timeline.lanes[0].lost = {{80000, 1, 0, ""}, {120000, 1, 0, ""}};
    EXPECT_THAT(pageOf(timeline), HasSubstr(">2 packets<"));
    timeline.lanes[0].countsFrames = true;
    EXPECT_THAT(pageOf(timeline), HasSubstr(">2 frames<"));
}

TEST(TimelinePage, CountsPicturesThatHaveNoSyncFlag) {
    Timeline timeline = timelineOf({laneOf(TrackKind::kVideo, pictures(24))});
    EXPECT_THAT(pageOf(timeline), HasSubstr(">2 I, 22 P<"));
    timeline.lanes[0].packets[12].isSync = false;
    EXPECT_THAT(pageOf(timeline), HasSubstr(">2 I (1 without a sync flag), 22 P<"));
    timeline.lanes[0].track.mime = "video/x-vnd.on2.vp8";
    EXPECT_THAT(pageOf(timeline), HasSubstr(">2 key (1 without a sync flag), 22 inter<"));
}

TEST(TimelinePage, OfAFileWithoutTracksOrPacketsIsWhole) {
    for (const Timeline& timeline : {timelineOf({}), timelineOf({laneOf(TrackKind::kVideo, {})})}) {
        EXPECT_THAT(pageOf(timeline), HasSubstr("no packets"));
        EXPECT_THAT(pageOf(timeline), HasSubstr("</html>"));
        EXPECT_THAT(drawingOf(timeline), HasSubstr("</svg>"));
    }
}

TEST(TimelinePage, HasNamesFromOutsideAsText) {
    Timeline timeline = picturesAt({0, 40000});
    const std::string hostile = "</title></script><script>alert('a')</script>{{data}}";
    timeline.fileName = hostile;
    timeline.file.mime = hostile;
    timeline.lanes[0].track.codec.name = hostile;
    timeline.failures = {hostile};
    EXPECT_THAT(pageOf(timeline), Not(HasSubstr("<script>alert")));
    EXPECT_EQ(countOf("</script>", pageOf(timeline)), 3U);
    EXPECT_THAT(drawingOf(timeline), Not(HasSubstr("<script")));
}

TEST(TimelinePage, NamesNothingElsewhere) {
    const std::string page = pageOf(timelineOf({laneOf(TrackKind::kVideo, pictures(24))}));
    EXPECT_THAT(page, HasSubstr("default-src 'none'"));
    EXPECT_THAT(page, Not(HasSubstr(" src=")));
    EXPECT_THAT(page, Not(HasSubstr("url(")));
    EXPECT_THAT(page, Not(HasSubstr("@import")));
    EXPECT_EQ(countOf("http", page),
              countOf("http://www.w3.org/2000/svg", page) + countOf("http-equiv", page));
}

UnpackedPage dataOf(const Timeline& timeline) {
    return UnpackedPage(pageOf(timeline));
}

TEST(TimelineData, HasEachPacketInTheOrderOfTheFile) {
    Timeline timeline = picturesAt({80000, 0, 40000});
    timeline.lanes[0].packets[0].isSync = true;
    timeline.lanes[0].packets[0].type = FrameType::kIntra;
    timeline.lanes[0].packets[1].size = 300;
    const UnpackedPage page = dataOf(timeline);
    EXPECT_EQ(page.outline()["lanes"][0]["codec"], "pictures");
    EXPECT_THAT(page.times(0), ElementsAre(80000, 0, 40000));
    EXPECT_THAT(page.sizes(0), ElementsAre(1, 300, 1));
    EXPECT_THAT(page.positions(0), ElementsAre(1, 2, 3));
    EXPECT_THAT(page.kinds(0), ElementsAre(4, 3, 3));
}

TEST(TimelineData, HasEachPacketOfALongFile) {
    const Timeline timeline = timelineOf({laneOf(TrackKind::kVideo, pictures(90000))});
    const UnpackedPage page = dataOf(timeline);
    const auto& packets = timeline.lanes[0].packets;
    ASSERT_EQ(page.times(0).size(), packets.size());
    const auto positions = page.positions(0);
    const auto times = page.times(0);
    ASSERT_EQ(positions.size(), packets.size());
    for (size_t i = 0; i < packets.size(); ++i) {
        ASSERT_EQ(times[i], packets[i].timeUs);
        ASSERT_EQ(positions[i], static_cast<int64_t>(packets[i].readUpTo));
    }
}

TEST(TimelineData, HoldsTheReadPositionsOfAPluginThatReadsAheadInFewBytes) {
    auto packets = pictures(2000);
    for (size_t i = 0; i + 9 < packets.size(); ++i) {
        packets[i].readUpTo = packets[i + 9].readUpTo;
    }
    const UnpackedPage page = dataOf(timelineOf({laneOf(TrackKind::kVideo, packets)}));
    EXPECT_EQ(page.outline()["lanes"][0]["lead"], 9);
    EXPECT_EQ(page.positions(0)[1000], static_cast<int64_t>(packets[1000].readUpTo));
}

TEST(TimelineData, TakesTimesOutOfReachForTheFarthestOnes) {
    const UnpackedPage page = dataOf(picturesAt({0, INT64_MAX, INT64_MIN, 5}));
    EXPECT_THAT(page.times(0), ElementsAre(0, kFarthestUs, -kFarthestUs, 5));
}

TEST(TimelineData, HasWholeDigestsOfAShortFileAndTheirBeginningsOfALongOne) {
    Timeline timeline = picturesAt({0, 40000});
    timeline.lanes[0].packets[0].digest = 0x0123456789abcdef;
    EXPECT_EQ(dataOf(timeline).outline()["digestBytes"], 8);
    EXPECT_THAT(dataOf(timeline).digests(0), ElementsAre(0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd,
                                                         0xef, 0, 0, 0, 0, 0, 0, 0, 0));
    timeline.lanes.push_back(laneOf(TrackKind::kVideo, pictures(240000)));
    const UnpackedPage page = dataOf(timeline);
    EXPECT_EQ(page.outline()["digestBytes"], 2);
    EXPECT_THAT(page.digests(0), ElementsAre(0x01, 0x23, 0, 0));
}

TEST(TimelineData, PutsFindingsWhereTheyAre) {
    Timeline timeline = picturesAt({0, 40000});
    ShownFinding finding;
    finding.id = "junk-skipped";
    finding.text = "5 bytes";
    finding.lane = 0;
    finding.span = TimeSpan{10, 20};
    timeline.findings = {finding, {}};
    const json found = dataOf(timeline).outline()["findings"];
    EXPECT_EQ(found[0]["text"], "5 bytes");
    EXPECT_EQ(found[0]["lane"], 0);
    EXPECT_EQ(found[0]["fromUs"], 10);
    EXPECT_EQ(found[0]["toUs"], 20);
    EXPECT_TRUE(found[1]["lane"].is_null());
    EXPECT_TRUE(found[1]["fromUs"].is_null());
}

TEST(TimelineCut, KeepsWhatIsWithinTheTime) {
    Timeline timeline = picturesAt({0, 40000, 80000, 120000});
    timeline.lanes[0].lost = {{30000, 1, 0, ""}, {50000, 1, 0, ""}};
    timeline.seeks = {{0, 0, true, {}}, {60000, 0, true, {}}};
    cutTo(40000, 120000, timeline);
    EXPECT_THAT(dataOf(timeline).times(0), ElementsAre(40000, 80000));
    EXPECT_EQ(timeline.lanes[0].lost.size(), 1U);
    EXPECT_EQ(timeline.seeks.size(), 1U);
}

TEST(TimelineCut, WithoutTimesKeepsAll) {
    Timeline timeline = picturesAt({0, 40000});
    cutTo(std::nullopt, std::nullopt, timeline);
    EXPECT_EQ(timeline.lanes[0].packets.size(), 2U);
}

std::vector<PacketPoint> sounds(size_t count) {
    auto packets = pictures(count);
    for (size_t i = 0; i < count; ++i) {
        packets[i].timeUs = static_cast<int64_t>(i) * 26122;
        packets[i].type = FrameType::kUnknown;
    }
    return packets;
}

TEST(TimelineSize, OfAnHourStaysWithinLimits) {
    Timeline hour = timelineOf({laneOf(TrackKind::kVideo, pictures(90000)),
                                laneOf(TrackKind::kAudio, sounds(137805))});
    std::mt19937_64 chance(1);
    for (Lane& lane : hour.lanes) {
        for (PacketPoint& packet : lane.packets) {
            packet.digest = chance();
        }
    }
    EXPECT_LT(pageOf(hour).size(), 1500000U);
    EXPECT_LT(drawingOf(hour).size(), kLargestPage);
}

TEST(TimelineSize, OfManyTracksStaysWithinLimits) {
    const Timeline tracks =
            timelineOf(std::vector<Lane>(64, laneOf(TrackKind::kVideo, pictures(9000))));
    EXPECT_LT(pageOf(tracks).size(), kLargestPage);
}

// Every packet steps backward or repeats a time, and all numbers are long.
TEST(TimelineSize, OfTheMostPacketsWithAllMarksStaysWithinLimits) {
    std::vector<PacketPoint> packets;
    for (size_t i = 0; i < 12000; ++i) {
        const auto timeUs = static_cast<int64_t>(360000000000 - i / 2 * 30000123);
        packets.push_back({timeUs, 1000000 + i, i % 2 * 4000000000, i % 3 == 0,
                           i % 2 == 0 ? FrameType::kIntra : FrameType::kBidirectional});
    }
    EXPECT_LT(pageOf(timelineOf({laneOf(TrackKind::kVideo, packets)})).size(), kLargestPage);
}

}  // namespace
}  // namespace ogmprobe::timeline::test
