// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmEsQueueTest"
#include "audio/OgmEsQueue.h"

#include <gtest/gtest.h>

#include <map>

#include "EventLog.h"

namespace android::ogm::test {
namespace {

TEST(OgmEsQueueTest, EveryStreamTypeHasItsModeOrNone) {
    const std::map<uint32_t, uint32_t> modes{
            {1, 21},  {2, 13},  {3, 1},   {4, 12}, {5, 24}, {6, 21}, {7, 3},  {8, 2}, {9, 25},
            {16, 11}, {18, 23}, {19, 22}, {22, 0}, {23, 6}, {24, 7}, {25, 8}, {26, 9}};
    for (uint32_t type = 0; type < 300; ++type) {
        const auto expected = modes.find(type);
        EXPECT_EQ(OgmEsQueue::modeFor(type),
                  expected != modes.end() ? std::optional(expected->second) : std::nullopt)
                << type;
    }
    EXPECT_EQ(OgmEsQueue::modeFor(0xFFFFFFFF), std::nullopt);
}

TEST(OgmEsQueueTest, AQueueKeepsItsModeAndFlags) {
    const OgmEsQueue queue(21, 0);
    EXPECT_EQ(queue.mode(), 21u);
    EXPECT_EQ(queue.flags(), 0u);
}

TEST(OgmEsQueueTest, TheMpegAudioSwitchIsLoggedAsAnErrorUnderItsOwnTag) {
    EventLog events;
    const LogCapture capture(events);
    OgmEsQueue queue(21, 0);
    queue.setDequeueMpegAudioOgm(true);
    queue.setDequeueMpegAudioOgm(false);
    const auto line = [](const char* text) {
        return LogLine{ANDROID_LOG_ERROR, "OgmEsqueue", text};
    };
    EXPECT_EQ(events.lines(), (std::vector{line("set  mDequeueMpegAudioOgm :1\n"),
                                           line("set  mDequeueMpegAudioOgm :0\n")}));
}

}  // namespace
}  // namespace android::ogm::test
