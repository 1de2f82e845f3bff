// SPDX-License-Identifier: Apache-2.0
#include "ScriptedSource.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Ends.h"

namespace android::ogm::fuzz {
namespace {

constexpr size_t kReadBudget = 6000;

ssize_t readFrom(ScriptedSource& source, int64_t offset, size_t size) {
    Bytes bytes(size);
    CDataSource* const table = source.table();
    return table->readAt(table->handle, offset, bytes.data(), size);
}

std::vector<ssize_t> readsWith(Fault fault, size_t count) {
    SessionInput input;
    input.faults.push_back(fault);
    const Bytes file(20, 7);
    ScriptedSource source(input, file);
    std::vector<ssize_t> results(count);
    std::generate(results.begin(), results.end(), [&] { return readFrom(source, 4, 10); });
    return results;
}

void exhaust(ScriptedSource& source) {
    for (size_t i = 0; i < kReadBudget; ++i) {
        (void)readFrom(source, 0, 1);
    }
}

void readTooOften(ScriptedSource& source) {
    for (size_t i = 0; i < kReadBudget; ++i) {
        EXPECT_EQ(readFrom(source, 0, 1), 0);
    }
}

TEST(ScriptedSourceTest, ReturnsWhatIsThereAndRefusesNegativeOffsets) {
    const SessionInput input;
    const Bytes file(20, 7);
    ScriptedSource source(input, file);
    EXPECT_EQ(readFrom(source, 4, 10), 10);
    EXPECT_EQ(readFrom(source, 15, 10), 5);
    EXPECT_EQ(readFrom(source, 20, 10), 0);
    EXPECT_EQ(readFrom(source, -1, 10), -2147483648LL);
    EXPECT_EQ(source.delivered(), 15U);
    EXPECT_EQ(source.reads(), 4U);
}

TEST(ScriptedSourceTest, FaultsHitTheReadsThatTheyName) {
    using Results = std::vector<ssize_t>;
    EXPECT_EQ(readsWith({FaultKind::kNothing, 1, 2}, 4), (Results{10, 0, 0, 10}));
    EXPECT_EQ(readsWith({FaultKind::kOneShort, 2, 0}, 4), (Results{10, 10, 9, 9}));
    EXPECT_EQ(readsWith({FaultKind::kHalf, 0, 1}, 2), (Results{5, 10}));
    EXPECT_EQ(readsWith({FaultKind::kIoError, 0, 1}, 2), (Results{-1004, 10}));
    EXPECT_EQ(readsWith({FaultKind::kRefused, 0, 1}, 2), (Results{-2147483648LL, 10}));
}

TEST(ScriptedSourceTest, FallsSilentWhenItsReadsAreSpent) {
    const SessionInput input;
    const Bytes file(20, 7);
    ScriptedSource source(input, file);
    exhaust(source);
    EXPECT_EQ(readFrom(source, 0, 1), 0);
}

TEST(ScriptedSourceTest, ACallThatReadsOnInSilenceEndsTheProcess) {
    const SessionInput input;
    const Bytes file(20, 7);
    ScriptedSource source(input, file);
    exhaust(source);
    EXPECT_DEATH(readTooOften(source), "finding: a call goes on reading");
}

TEST(ScriptedSourceTest, ACallThatReadsOnInSilenceLeavesTheRunWhenTheSizeIsUnknown) {
    SessionInput input;
    input.sizeKind = ReportedSize::kUnknown;
    const Bytes file(20, 7);
    ScriptedSource source(input, file);
    exhaust(source);
    EXPECT_FALSE(endsByItself([&] { readTooOften(source); }));
}

TEST(ScriptedSourceTest, TheSearchForAStartCodeEndsWhenOneBeginsAmongThePositionsOf8Bits) {
    const auto endless = [](size_t size, size_t position) {
        Bytes bytes(size, 7);
        const uint8_t prefix[] = {0, 0, 1};
        std::copy_n(prefix, std::min<size_t>(3, size - position), bytes.begin() + position);
        return searchesForever(ByteView(bytes.data(), bytes.size()));
    };
    EXPECT_FALSE(endless(257, 256));
    EXPECT_TRUE(endless(258, 256));
    EXPECT_TRUE(endless(400, 256));
    EXPECT_FALSE(endless(400, 255));
    EXPECT_FALSE(endless(400, 0));
}

TEST(ScriptedSourceTest, ThePayloadThatStartsASearchWithoutEndLeavesTheRun) {
    const SessionInput input;
    const Bytes file(300, 7);
    ScriptedSource source(input, file);
    source.onLogLine("pageDataSize = %d");
    EXPECT_EQ(readFrom(source, 0, 300), 300) << "nothing is searched yet";
    source.onLogLine("OGV_VIDEO_MP4:TYPE:%d, serialNo=%d");
    EXPECT_EQ(readFrom(source, 0, 300), 300) << "a page header";
    source.onLogLine("pageDataSize = %d");
    EXPECT_EQ(readFrom(source, 0, 200), 200);
    source.onLogLine("pageDataSize = %d");
    EXPECT_FALSE(endsByItself([&] { (void)readFrom(source, 200, 58); }));
}

}  // namespace
}  // namespace android::ogm::fuzz
