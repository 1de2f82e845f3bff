// SPDX-License-Identifier: Apache-2.0
#include "seek/SyncFrameSearch.h"

#include "LogTest.h"
#include "Microseconds.h"
#include "Views.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test::sync_frame_search_test {
namespace {

using Result = SyncFrameSearch::Result;

constexpr Bytes::value_type kSync = 0x08;
constexpr Bytes::value_type kPlain = 0x00;

/** The search of a video queue for a frame whose header byte marks it as a sync frame. */
class SyncFrameSearchTest : public LogTest {
  protected:
    /** Queues a frame; the last one that was added is open. */
    void add(int64_t timeUs, Bytes::value_type headerByte) {
        mPackets.beginPacket(timeUs, 0);
        ByteBuffer bytes(viewOf({headerByte, 1, 2}));
        mPackets.appendBytes(&bytes);
        mEvents.clear();
    }

    /** One round of a search, in a queue that holds these frames and an open one. */
    Result searchQueue(SyncFrameSearch& search,
                       std::initializer_list<std::pair<int64_t, Bytes::value_type>> frames) {
        mPackets.clear();
        for (const auto& [timeUs, headerByte] : frames) {
            add(timeUs, headerByte);
        }
        add(99 * kSecond, kSync);
        return search.searchQueue(&mPackets);
    }

    PacketQueue mPackets{1, OGV_VIDEO_H264};
};

TEST_F(SyncFrameSearchTest, FramesBeforeTheFirstSyncFrameAreDropped) {
    SyncFrameSearch search(10 * kSecond);
    EXPECT_EQ(searchQueue(search, {{7 * kSecond, kPlain}, {8 * kSecond, kSync}}), Result::kFound);
    EXPECT_EQ(mPackets.size(), 2U);
    EXPECT_EQ(mPackets.front().timeUs, 8 * kSecond);
    EXPECT_FALSE(search.isSearching());
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("found I Frame after seek,timeus=8000000")}));
}

TEST_F(SyncFrameSearchTest, WithoutASyncFrameAllButTheOpenFrameAreDropped) {
    SyncFrameSearch search(10 * kSecond);
    EXPECT_EQ(searchQueue(search, {{7 * kSecond, kPlain}, {8 * kSecond, kPlain}}),
              Result::kDrained);
    EXPECT_EQ(mPackets.size(), 1U);
    EXPECT_TRUE(search.isSearching());
    EXPECT_EQ(search.searchQueue(&mPackets), Result::kDrained);
}

TEST_F(SyncFrameSearchTest, ASyncFrameMayLieTwoSecondsAfterTheTime) {
    SyncFrameSearch search(10 * kSecond);
    EXPECT_EQ(searchQueue(search, {{12 * kSecond, kSync}}), Result::kFound);
    SyncFrameSearch earlier(10 * kSecond - 1);
    EXPECT_EQ(searchQueue(earlier, {{12 * kSecond, kSync}}), Result::kTooLate);
    EXPECT_EQ(mPackets.size(), 2U);
    EXPECT_TRUE(earlier.isSearching());
}

TEST_F(SyncFrameSearchTest, AnyFrameTooLateEndsARound) {
    SyncFrameSearch search(10 * kSecond);
    EXPECT_EQ(searchQueue(search, {{9 * kSecond, kPlain}, {12 * kSecond + 1, kPlain}}),
              Result::kTooLate);
    EXPECT_EQ(mPackets.front().timeUs, 12 * kSecond + 1);
}

TEST_F(SyncFrameSearchTest, TheDistanceToATimeWraps) {
    // The difference to the smallest time wraps, so every frame appears to be before it.
    SyncFrameSearch search(INT64_MIN);
    EXPECT_EQ(searchQueue(search, {{0, kSync}}), Result::kFound);
}

TEST_F(SyncFrameSearchTest, AStepBackIsThreeSecondsAndEndsAtZero) {
    struct Row {
        int64_t from;
        int64_t to;
    };
    for (const Row& row :
         {Row{20 * kSecond, 17 * kSecond}, Row{3 * kSecond + 1, 1}, Row{3 * kSecond, 0},
          Row{2 * kSecond, 0}, Row{0, 0}, Row{-5, 0}, Row{INT64_MIN, 0}}) {
        SyncFrameSearch search(row.from);
        EXPECT_EQ(search.timeUs(), row.from);
        search.stepBack();
        EXPECT_EQ(search.timeUs(), row.to);
        EXPECT_EQ(search.retries(), 9);
    }
}

TEST_F(SyncFrameSearchTest, TheEleventhStepGoesToTheTimeOfTheSeekAndEndsTheSearch) {
    SyncFrameSearch search(40 * kSecond);
    for (int step = 1; step <= 10; ++step) {
        ASSERT_TRUE(search.isSearching());
        search.stepBack();
        EXPECT_EQ(search.timeUs(), (40 - 3 * step) * kSecond);
        EXPECT_EQ(search.retries(), 10 - step);
    }
    EXPECT_TRUE(mEvents.lines().empty());
    ASSERT_TRUE(search.isSearching());
    search.stepBack();
    EXPECT_EQ(search.timeUs(), 40 * kSecond);
    EXPECT_EQ(search.retries(), -1);
    EXPECT_FALSE(search.isSearching());
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("read, 1210,Can't find I frame after search 10 times")}));
}

TEST_F(SyncFrameSearchTest, TheEndOfTheFileEndsTheSearchAfterOneMoreRound) {
    SyncFrameSearch search(10 * kSecond);
    search.noteEndOfFile();
    EXPECT_FALSE(search.isSearching());
    // The round itself continues as usual.
    EXPECT_EQ(searchQueue(search, {{9 * kSecond, kSync}}), Result::kFound);
    search.stepBack();
    EXPECT_FALSE(search.isSearching());
}

}  // namespace
}  // namespace android::ogm::test::sync_frame_search_test
