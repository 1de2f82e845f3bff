// SPDX-License-Identifier: Apache-2.0
#include "audio/ElementaryStream.h"

#include <functional>

#include "ChildProcess.h"
#include "CutterDriver.h"
#include "LogTest.h"
#include "Views.h"

namespace android::ogm::test::elementary_stream_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr int64_t kUnknownTime = 4294967295;
constexpr char kReturningZero[] = "Returning 0 timestamp";

LogLine change(int64_t from, int64_t to) {
    return errorLine(formatted("fetchTimestamp - Change: %lld  %lld \n",
                               static_cast<long long>(from), static_cast<long long>(to)));
}

const ChildResult& listRanEmpty() {
    static const ChildResult result = abortedWith(
            "OgmExtractor",
            "frameworks/av/media/libstagefright/ogm/OgmExtractor:499 CHECK(!mRangeInfos.empty()) "
            "failed.");
    return result;
}

constexpr size_t kSize = 100;

/** Appends, takes and drops the bytes of a stream. */
class ElementaryStreamTest : public LogTest {
  protected:
    void append(const Bytes& bytes, int64_t timeUs) {
        ByteBuffer piece(viewOf(bytes));
        mStream.append(&piece, timeUs);
    }
    Bytes bytes() const { return bytesOf(mStream.view()); }
    Bytes take(size_t offset, size_t size) {
        return bytesOf(mStream.takeFrame(offset, size, &mAllocator));
    }

    ElementaryStream mStream;
    HeapAllocator mAllocator;
};

TEST_F(ElementaryStreamTest, PiecesAreJoinedAndTheirRangesKept) {
    EXPECT_TRUE(mStream.empty());
    append({1, 2}, 1000);
    append({}, 2000);
    append({3}, 3000);
    EXPECT_EQ(bytes(), (Bytes{1, 2, 3}));
    EXPECT_EQ(mStream.size(), 3U);
    EXPECT_THAT(rangesOf(mStream), ElementsAre(Pair(1000, 2U), Pair(2000, 0U), Pair(3000, 1U)));
}

TEST_F(ElementaryStreamTest, AFrameIsTakenWithTheBytesBeforeItAndItsRangesStay) {
    append({9, 1, 2, 3}, 1000);
    append({4}, 2000);
    EXPECT_EQ(take(1, 2), (Bytes{1, 2}));
    EXPECT_EQ(bytes(), (Bytes{3, 4}));
    EXPECT_THAT(rangesOf(mStream), ElementsAre(Pair(1000, 4U), Pair(2000, 1U)));
}

TEST_F(ElementaryStreamTest, AFrameKeepsItsBytesWhateverFollows) {
    for (const bool isFull : {true, false}) {
        mStream.clear();
        append(pattern(kSize, 1), 1000);
        if (!isFull) {
            append(pattern(kSize, 2), 1000);  // room for more from here on
        }
        const ByteBuffer frame = mStream.takeFrame(10, 20, &mAllocator);
        for (uint32_t i = 3; i < 20; ++i) {
            append(pattern(kSize, i), 1000);
        }
        EXPECT_EQ(bytesOf(frame), head(tail(pattern(kSize, 1), 10), 20)) << isFull;
    }
}

TEST_F(ElementaryStreamTest, DroppedBytesLeaveTheirRanges) {
    append({1, 2, 3}, 1000);
    mStream.dropBytes(2);
    EXPECT_EQ(bytes(), Bytes{3});
    mStream.discardBytes();
    EXPECT_TRUE(mStream.empty());
    EXPECT_THAT(rangesOf(mStream), ElementsAre(Pair(1000, 3U)));
}

TEST_F(ElementaryStreamTest, AStreamThatIsClearedHasNeitherBytesNorRanges) {
    append({1, 2, 3}, 1000);
    mStream.clear();
    EXPECT_TRUE(mStream.empty());
    EXPECT_THAT(rangesOf(mStream), IsEmpty());
}

TEST_F(ElementaryStreamTest, TheSearchedPositionIsResetByDroppingBytesButNotByAppending) {
    const auto searchedAfter = [this](const std::function<void()>& step) {
        mStream.clear();
        append({1, 2, 3, 4}, 1000);
        mStream.setSearched(3);
        step();
        return mStream.searched();
    };
    EXPECT_EQ(searchedAfter([this] { append({5}, 2000); }), 3U);
    EXPECT_EQ(searchedAfter([this] { mStream.fetchTimestamp(1); }), 3U);
    EXPECT_EQ(searchedAfter([this] { mStream.dropBytes(1); }), 0U);
    EXPECT_EQ(searchedAfter([this] { take(0, 1); }), 0U);
    EXPECT_EQ(searchedAfter([this] { mStream.discardBytes(); }), 0U);
    EXPECT_EQ(searchedAfter([this] { mStream.clear(); }), 0U);
}

/** The times of bytes that came with times. */
class FetchTimestampTest : public LogTest {
  protected:
    void add(std::initializer_list<std::pair<int64_t, size_t>> ranges) {
        for (const auto& [timeUs, length] : ranges) {
            ByteBuffer bytes(viewOf(filled(length, 0x55)));
            mStream.append(&bytes, timeUs);
        }
        mEvents.clear();
    }

    int64_t fetch(uint64_t size) { return mStream.fetchTimestamp(size); }
    Ranges ranges() const { return rangesOf(mStream); }

    ElementaryStream mStream;
};

TEST_F(FetchTimestampTest, NoBytesHaveTheTimeMinusOneAndTouchNothing) {
    EXPECT_EQ(fetch(0), -1);
    add({{1000, 10}});
    EXPECT_EQ(fetch(0), -1);
    EXPECT_THAT(ranges(), ElementsAre(Pair(1000, 10U)));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(FetchTimestampTest, AFrameWithinARangeShortensIt) {
    add({{1000, 10}, {2000, 10}});
    EXPECT_EQ(fetch(4), 1000);
    EXPECT_EQ(fetch(5), 1000);
    EXPECT_THAT(ranges(), ElementsAre(Pair(1000, 1U), Pair(2000, 10U)));
}

TEST_F(FetchTimestampTest, AFrameExactlyAsLongAsTheFirstRangeErasesIt) {
    add({{1000, 10}, {2000, 10}});
    EXPECT_EQ(fetch(10), 1000);
    EXPECT_THAT(ranges(), ElementsAre(Pair(2000, 10U)));
    EXPECT_EQ(fetch(1), 2000);
}

TEST_F(FetchTimestampTest, AFrameOverThreeRangesHasTheTimeOfTheFirstAndShortensTheThird) {
    add({{1000, 10}, {2000, 20}, {3000, 30}});
    EXPECT_EQ(fetch(35), 1000);
    EXPECT_THAT(ranges(), ElementsAre(Pair(3000, 25U)));
}

TEST_F(FetchTimestampTest, AFrameThatEndsWithItsLastRangeErasesThatToo) {
    add({{1000, 10}, {2000, 20}, {3000, 30}});
    EXPECT_EQ(fetch(30), 1000);
    EXPECT_THAT(ranges(), ElementsAre(Pair(3000, 30U)));
    EXPECT_EQ(fetch(30), 3000);
    EXPECT_THAT(ranges(), IsEmpty());
}

TEST_F(FetchTimestampTest, AnEmptyRangeInFrontGivesTheTime) {
    add({{1000, 10}, {1500, 0}, {2000, 10}});
    EXPECT_EQ(fetch(10), 1000);
    EXPECT_EQ(fetch(10), 1500);
    EXPECT_THAT(ranges(), IsEmpty());
}

TEST_F(FetchTimestampTest, AnUnknownTimeIsReplacedByThatOfTheNextRange) {
    add({{kUnknownTime, 10}, {5000, 10}});
    EXPECT_EQ(fetch(15), 5000);
    EXPECT_THAT(mEvents.lines(), ElementsAre(change(kUnknownTime, 5000)));
    EXPECT_THAT(ranges(), ElementsAre(Pair(5000, 5U)));
}

TEST_F(FetchTimestampTest, AnUnknownTimeIsNotReplacedByZeroButByTheTimeAfterIt) {
    add({{kUnknownTime, 10}, {0, 10}, {7000, 10}});
    EXPECT_EQ(fetch(15), kUnknownTime);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
    add({{8000, 10}});
    // The rest of the range of time zero comes first now.
    EXPECT_EQ(fetch(5), 0);
    EXPECT_EQ(fetch(10), 7000);
}

TEST_F(FetchTimestampTest, AnUnknownTimeIsReplacedByTheFirstThatIsNotZero) {
    add({{kUnknownTime, 10}, {0, 10}, {7000, 10}, {8000, 10}});
    EXPECT_EQ(fetch(40), 7000);
    EXPECT_THAT(mEvents.lines(), ElementsAre(change(kUnknownTime, 7000)));
}

TEST_F(FetchTimestampTest, AnUnknownTimeStaysWhenNoFurtherRangeIsTouched) {
    add({{kUnknownTime, 10}, {5000, 10}});
    EXPECT_EQ(fetch(10), kUnknownTime);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(FetchTimestampTest, ARangeOfUnknownTimeReplacesAnUnknownTimeByItself) {
    add({{kUnknownTime, 10}, {kUnknownTime, 10}, {9000, 10}});
    EXPECT_EQ(fetch(25), 9000);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(change(kUnknownTime, kUnknownTime), change(kUnknownTime, 9000)));
}

TEST_F(FetchTimestampTest, OnlyTheExactMarkIsUnknown) {
    for (const int64_t timeUs : {kUnknownTime - 1, kUnknownTime + 1, int64_t{-1}}) {
        add({{timeUs, 10}, {5000, 10}});
        EXPECT_EQ(fetch(20), timeUs);
        EXPECT_THAT(mEvents.lines(), IsEmpty());
    }
}

TEST_F(FetchTimestampTest, AnUnknownTimeMayTurnIntoANegativeOne) {
    add({{kUnknownTime, 10}, {-7, 10}});
    EXPECT_EQ(fetch(20), -7);
    EXPECT_THAT(mEvents.lines(), ElementsAre(change(kUnknownTime, -7)));
}

TEST_F(FetchTimestampTest, ATimeOfZeroIsReturnedAndLogged) {
    add({{0, 10}, {5000, 10}});
    EXPECT_EQ(fetch(10), 0);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine(kReturningZero)));
    mEvents.clear();
    add({{0, 10}});
    EXPECT_EQ(fetch(20), 5000);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(FetchTimestampTest, MoreBytesThanTheRangesHoldEndTheProcess) {
    EXPECT_EQ(runInChild([this] { fetch(1); }), listRanEmpty());
    add({{1000, 10}, {2000, 10}});
    EXPECT_EQ(runInChild([this] { fetch(21); }), listRanEmpty());
    EXPECT_EQ(runInChild([this] { fetch(20); }), returned());
}

}  // namespace
}  // namespace android::ogm::test::elementary_stream_test
