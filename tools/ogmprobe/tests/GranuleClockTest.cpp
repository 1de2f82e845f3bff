// SPDX-License-Identifier: Apache-2.0
#include "sync/GranuleClock.h"

#include <gtest/gtest.h>

#include <vector>

namespace ogmprobe {
namespace {

StreamHeader headerOf(StreamKind kind, uint64_t timeUnit, uint64_t samplesPerUnit) {
    StreamHeader header({});
    header.kind = kind;
    header.timeUnit = timeUnit;
    header.samplesPerUnit = samplesPerUnit;
    return header;
}

TEST(GranuleClock, VideoCountsFrames) {
    const GranuleClock clock(headerOf(StreamKind::kVideo, 400000, 1));
    EXPECT_EQ(clock.timeUs(0), 0);
    EXPECT_EQ(clock.timeUs(25), 1000000);
    EXPECT_EQ(clock.timeUs(-1), -40000);
}

TEST(GranuleClock, VideoDoesNotLookAtSamplesPerUnit) {
    const GranuleClock clock(headerOf(StreamKind::kVideo, 400000, 0));
    EXPECT_EQ(clock.timeUs(1), 40000);
}

TEST(GranuleClock, AudioCountsSamples) {
    const GranuleClock clock(headerOf(StreamKind::kAudio, 10000000, 44100));
    EXPECT_EQ(clock.timeUs(44100), 1000000);
    EXPECT_EQ(clock.timeUs(1152), 26122);
}

TEST(GranuleClock, ARateThatIsNoWholeNumberIsKept) {
    // 5512.5 samples a second.
    const GranuleClock clock(headerOf(StreamKind::kAudio, 20000000, 11025));
    EXPECT_EQ(clock.timeUs(11025), 2000000);
}

TEST(GranuleClock, TextCountsMilliseconds) {
    EXPECT_EQ(GranuleClock(headerOf(StreamKind::kText, 10000, 1)).timeUs(1500), 1500000);
    EXPECT_EQ(GranuleClock(headerOf(StreamKind::kText, 10000, 0)).timeUs(1500), 1500000);
}

TEST(GranuleClock, AHeaderWithoutTimesGivesNoTime) {
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kVideo, 0, 1)).timeUs(1));
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kAudio, 10000000, 0)).timeUs(1));
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kAudio, 0, 44100)).timeUs(1));
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kVorbis, 10000000, 44100)).timeUs(1));
}

TEST(GranuleClock, ATimeThatDoesNotFitIsNone) {
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kVideo, UINT64_MAX, 1)).timeUs(INT64_MAX));
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kVideo, UINT64_MAX, 1)).timeUs(11));
    EXPECT_FALSE(GranuleClock(headerOf(StreamKind::kAudio, 1, UINT64_MAX)).timeUs(1));
    EXPECT_EQ(GranuleClock(headerOf(StreamKind::kAudio, UINT64_MAX, UINT64_MAX / 10)).timeUs(0), 0);
}

}  // namespace
}  // namespace ogmprobe
