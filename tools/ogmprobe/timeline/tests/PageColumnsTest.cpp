// SPDX-License-Identifier: Apache-2.0
// The columns of a page's data, apart from the packets themselves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Lanes.h"
#include "Page.h"
#include "UnpackedPage.h"

namespace ogmprobe::timeline::page_columns_test {
namespace {

using nlohmann::json;
using test::UnpackedPage;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr size_t kOfPages = UnpackedPage::kOfPages;
constexpr size_t kOfALane = UnpackedPage::kOfALane;
// Of a lane.
constexpr size_t kPages = 4;
constexpr size_t kPageTimes = 6;
constexpr size_t kLateByVideo = 9;
constexpr size_t kLost = 12;
constexpr size_t kGaps = 16;

UnpackedPage unpacked(const Timeline& timeline) {
    return UnpackedPage(pageDocument(Chart(timeline)));
}

Timeline steadyTrack() {
    return test::timelineOf(
            {test::laneOf(TrackKind::kVideo, test::packetsAt({0, 40000, 80000, 120000}))});
}

TEST(PageColumns, HaveThePagesOfTheFileWithTheirStreams) {
    Timeline timeline = steadyTrack();
    timeline.pages = {{0, 100, 7, 0, std::nullopt},
                      {100, 50, 3, 0, 40000},
                      {155, 30, 7, 1, 80000},
                      {185, 20, 7, 2, std::nullopt}};
    const UnpackedPage page = unpacked(timeline);
    EXPECT_EQ(page.outline()["pages"], 4);
    // The distance of each page from the end of the one before; sizes; streams by serial number.
    EXPECT_THAT(page.signedAt(0), ElementsAre(0, 0, 5, 0));
    EXPECT_THAT(page.numbersAt(1), ElementsAre(100, 50, 30, 20));
    EXPECT_THAT(page.numbersAt(2), ElementsAre(1, 0, 1, 1));
    // Stream by stream: sequence numbers; whether the time is known; times.
    EXPECT_THAT(page.steadyAt(3), ElementsAre(0, 0, 1, 2));
    EXPECT_THAT(page.bytesAt(4), ElementsAre(1, 0, 1, 0));
    EXPECT_THAT(page.steadyAt(5), ElementsAre(40000, 40000, 80000, 80000));
}

TEST(PageColumns, HaveThePageThatAPacketBeginsOn) {
    Timeline timeline = steadyTrack();
    timeline.lanes[0].packets[1].page = 0;
    timeline.lanes[0].packets[3].page = 9;
    EXPECT_THAT(unpacked(timeline).steadyAt(kOfPages + kPages), ElementsAre(0, 1, 0, 10));
}

TEST(PageColumns, HaveTheRangesOfTimesByThePagesAndAgainstTheVideo) {
    Timeline timeline = steadyTrack();
    auto& packets = timeline.lanes[0].packets;
    packets[1].pageUs = TimeRange{1000, 1000};
    packets[2].pageUs = TimeRange{-500, 700};
    packets[0].lateByVideoUs = TimeRange{-9, 9};
    const UnpackedPage page = unpacked(timeline);
    EXPECT_THAT(page.bytesAt(kOfPages + kPageTimes), ElementsAre(0, 1, 1, 0));
    EXPECT_THAT(page.steadyAt(kOfPages + kPageTimes + 1), ElementsAre(0, 1000, -500, -500));
    EXPECT_THAT(page.numbersAt(kOfPages + kPageTimes + 2), ElementsAre(0, 0, 1200, 0));
    EXPECT_THAT(page.bytesAt(kOfPages + kLateByVideo), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(page.steadyAt(kOfPages + kLateByVideo + 1), ElementsAre(-9, -9, -9, -9));
    EXPECT_THAT(page.numbersAt(kOfPages + kLateByVideo + 2), ElementsAre(18, 0, 0, 0));
}

TEST(PageColumns, HaveWhatIsLostOfTracksAndOfRefusedStreams) {
    Timeline timeline = steadyTrack();
    timeline.lanes[0].lost = {
            {50, 7, 0, "a reason"}, {60, 8, 3, "another"}, {70, 9, 5, "a reason"}};
    timeline.refused = {{"text", "why", {{80, 2, 1, "another"}}}};
    const UnpackedPage page = unpacked(timeline);
    EXPECT_EQ(page.outline()["reasons"], json({"a reason", "another"}));
    const size_t lost = kOfPages + kLost;
    EXPECT_THAT(page.steadyAt(lost), ElementsAre(50, 60, 70));
    EXPECT_THAT(page.numbersAt(lost + 1), ElementsAre(7, 8, 9));
    EXPECT_THAT(page.steadyAt(lost + 2), ElementsAre(1, 4, 6));
    EXPECT_THAT(page.numbersAt(lost + 3), ElementsAre(0, 1, 0));
    const size_t refused = kOfPages + kOfALane;
    EXPECT_EQ(page.outline()["refused"],
              json({{{"name", "text"}, {"reason", "why"}, {"packets", 1}}}));
    EXPECT_THAT(page.steadyAt(refused), ElementsAre(80));
    EXPECT_THAT(page.numbersAt(refused + 1), ElementsAre(2));
    EXPECT_THAT(page.steadyAt(refused + 2), ElementsAre(2));
    EXPECT_THAT(page.numbersAt(refused + 3), ElementsAre(1));
}

TEST(PageColumns, HaveWhereNothingIsShown) {
    EXPECT_THAT(unpacked(steadyTrack()).steadyAt(kOfPages + kGaps), IsEmpty());
    const Timeline timeline = test::timelineOf({test::laneOf(
            TrackKind::kVideo, test::packetsAt({0, 40000, 80000, 1000000, 1040000, 1080000}))});
    const UnpackedPage page = unpacked(timeline);
    EXPECT_THAT(page.steadyAt(kOfPages + kGaps), ElementsAre(120000));
    EXPECT_THAT(page.steadyAt(kOfPages + kGaps + 1), ElementsAre(1000000));
}

TEST(PageColumns, HaveEachLogLineOnceWithAllItsPlaces) {
    Timeline timeline = steadyTrack();
    timeline.lines = {{3, "one"}, {4, "two"}, {9, "one"}};
    const UnpackedPage page = unpacked(timeline);
    const auto& bytes = page.bytesAt(kOfPages + kOfALane);
    EXPECT_EQ(json::parse(bytes.begin(), bytes.end()),
              json({{"texts", {"one", "two"}}, {"places", {3, 0, 4, 1, 9, 0}}}));
}

}  // namespace
}  // namespace ogmprobe::timeline::page_columns_test
