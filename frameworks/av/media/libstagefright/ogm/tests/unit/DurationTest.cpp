// SPDX-License-Identifier: Apache-2.0
#include "stream/Duration.h"

#include <gtest/gtest.h>

#include "EventLog.h"

namespace android::ogm::test {
namespace {

TEST(DurationTest, TypesOneToNineAreAudioAnd16To26AreVideo) {
    EventLog events;
    const LogCapture capture(events);
    for (uint32_t type = 1; type <= 9; ++type) {
        EXPECT_EQ(getLogicStrmType(type), LogicStreamType::kAudio) << type;
    }
    for (uint32_t type = 16; type <= 26; ++type) {
        EXPECT_EQ(getLogicStrmType(type), LogicStreamType::kVideo) << type;
    }
    EXPECT_TRUE(events.events().empty());
}

class UnknownLogicTypeTest : public ::testing::TestWithParam<uint32_t> {};

TEST_P(UnknownLogicTypeTest, IsLoggedAsAnError) {
    EventLog events;
    const LogCapture capture(events);
    EXPECT_EQ(getLogicStrmType(GetParam()), LogicStreamType::kUnknown);
    EXPECT_EQ(events.lines(),
              (std::vector{errorLine(formatted("getLogicStrmType:[%d]unknow LOGIC STREAM TYPE!",
                                               static_cast<int>(GetParam())))}));
}

INSTANTIATE_TEST_SUITE_P(Types, UnknownLogicTypeTest,
                         ::testing::Values(0u, 10u, 15u, 27u, 30u, 0xFFFFFFFFu));

}  // namespace
}  // namespace android::ogm::test
