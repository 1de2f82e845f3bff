// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Drawing.h"
#include "Lanes.h"

namespace ogmprobe::timeline::test {
namespace {

using nlohmann::json;
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

TEST(TimelineDrawing, MarksAGapInFrontOfThePacketsOfItsBin) {
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

TEST(TimelinePage, TellsWhatWentWrong) {
    Timeline timeline = picturesAt({0, 40000});
    EXPECT_THAT(pageOf(timeline), Not(HasSubstr("What could be read is drawn.")));
    timeline.failures = {"the extractor died in read: CHECK(a < b) failed."};
    for (const std::string& text : {pageOf(timeline), drawingOf(timeline)}) {
        EXPECT_THAT(text, HasSubstr("the extractor died in read: CHECK(a &lt; b) failed."));
        EXPECT_THAT(text, HasSubstr("What could be read is drawn."));
    }
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
    EXPECT_EQ(countOf("</script>", pageOf(timeline)), 2U);
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

TEST(TimelineData, HasEachPacketOfAShortFile) {
    Timeline timeline = picturesAt({80000, 0, 40000});
    timeline.lanes[0].packets[0].isSync = true;
    timeline.lanes[0].packets[0].type = FrameType::kIntra;
    const json lane = json::parse(pageData(Chart(timeline)))["lanes"][0];
    EXPECT_EQ(lane["name"], "Track 0 (pictures)");
    EXPECT_EQ(lane["times"], json({80000, -80000, 40000}));
    EXPECT_EQ(lane["sizes"], json({1, 1, 1}));
    EXPECT_EQ(lane["positions"], json({1, 1, 1}));
    EXPECT_EQ(lane["kinds"], "Iuu");
}

TEST(TimelineData, HasBinsOfALongFile) {
    const Timeline timeline = timelineOf({laneOf(TrackKind::kVideo, pictures(90000))});
    const json lane = json::parse(pageData(Chart(timeline)))["lanes"][0];
    EXPECT_FALSE(lane.contains("times"));
    uint64_t packets = 0;
    for (const json& bin : lane["bins"]) {
        packets += bin[1].get<uint64_t>();
    }
    EXPECT_EQ(packets, 90000U);
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
    const Timeline hour = timelineOf({laneOf(TrackKind::kVideo, pictures(90000)),
                                      laneOf(TrackKind::kAudio, sounds(137800)),
                                      laneOf(TrackKind::kAudio, sounds(137800))});
    EXPECT_LT(pageOf(hour).size(), kLargestPage);
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
