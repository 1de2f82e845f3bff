// SPDX-License-Identifier: Apache-2.0
#include "packet/ReadDecision.h"

#include "LogTest.h"

namespace android::ogm::test::read_decision_test {
namespace {

constexpr int32_t kOk = 0;
constexpr int32_t kEndOfStream = -10006;
constexpr int32_t kIo = -10007;
// The framework's older status values, which nothing in the plug-in returns any more.
constexpr int32_t kOldEndOfStream = -1011;
constexpr int32_t kOldIo = -1004;

class ReadDecisionTest : public LogTest {
  protected:
    std::vector<LogLine> lines() const { return mEvents.lines(); }
};

TEST_F(ReadDecisionTest, AQueueThatHadPacketsReturnsOneWhateverTheReaderReports) {
    for (const int32_t result : {kOk, kEndOfStream, kIo}) {
        EXPECT_EQ(decideAfterFilling(result, true, 2), ReadStep::kDequeue) << result;
    }
    EXPECT_TRUE(lines().empty());
}

TEST_F(ReadDecisionTest, AQueueThatHadPacketsAndMeetsTheOldEndOfStreamDrains) {
    EXPECT_EQ(decideAfterFilling(kOldEndOfStream, true, 5), ReadStep::kDequeue);
    EXPECT_EQ(lines(), (std::vector{infoLine("ERROR_END_OF_STREAM, dequeue existed frames[5]")}));
}

TEST_F(ReadDecisionTest, AQueueThatHadPacketsAndHasOneLeftEndsAtTheOldEndOfStream) {
    EXPECT_EQ(decideAfterFilling(kOldEndOfStream, true, 1), ReadStep::kEndOfStream);
    EXPECT_EQ(lines(), (std::vector{infoLine("ERROR_END_OF_STREAM, send EOS")}));
}

TEST_F(ReadDecisionTest, AQueueThatHadPacketsReportsTheOldIoFailure) {
    EXPECT_EQ(decideAfterFilling(kOldIo, true, 5), ReadStep::kIoError);
    EXPECT_EQ(lines(), (std::vector{errorLine("Read:dequeuePacket fail, ERROR_IO!")}));
}

TEST_F(ReadDecisionTest, AShortQueueReportsAnIoFailureWithoutALine) {
    EXPECT_EQ(decideAfterFilling(kIo, false, 5), ReadStep::kIoError);
    EXPECT_TRUE(lines().empty());
}

TEST_F(ReadDecisionTest, AShortQueueThatHasFilledGivesAPacket) {
    EXPECT_EQ(decideAfterFilling(kOk, false, 10), ReadStep::kDequeue);
    EXPECT_TRUE(lines().empty());
}

TEST_F(ReadDecisionTest, AShortQueueEndsAtTheEndOfTheDataHoweverMuchCameMeanwhile) {
    for (const size_t queued : {0, 1, 2, 9}) {
        EXPECT_EQ(decideAfterFilling(kEndOfStream, false, queued), ReadStep::kEndOfData) << queued;
    }
}

TEST_F(ReadDecisionTest, AShortQueueEndsAtTheOldEndOfStream) {
    EXPECT_EQ(decideAfterFilling(kOldEndOfStream, false, 1), ReadStep::kEndOfStream);
    EXPECT_EQ(lines(), (std::vector{infoLine("OGM_END_OF_TRACK 1, video send EOS")}));
}

TEST_F(ReadDecisionTest, AShortQueueThatGrewBeforeTheOldEndOfStreamGivesNothing) {
    EXPECT_EQ(decideAfterFilling(kOldEndOfStream, false, 2), ReadStep::kEndOfData);
    EXPECT_EQ(decideAfterFilling(kOldIo, false, 0), ReadStep::kEndOfData);
}

}  // namespace
}  // namespace android::ogm::test::read_decision_test
