// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <type_traits>

#include <gtest/gtest.h>

using ReadOptions = android::MediaTrackHelper::ReadOptions;

static_assert(std::is_same_v<std::underlying_type_t<ReadOptions::SeekMode>, int32_t>);
static_assert(ReadOptions::SEEK_PREVIOUS_SYNC == 0);
static_assert(ReadOptions::SEEK_NEXT_SYNC == 1);
static_assert(ReadOptions::SEEK_CLOSEST_SYNC == 2);
static_assert(ReadOptions::SEEK_CLOSEST == 3);
static_assert(ReadOptions::SEEK_FRAME_INDEX == 4);

namespace {

constexpr int64_t kTimeUs = -5;
constexpr uint32_t kSeek = 8;
constexpr uint32_t kNonBlocking = 16;

TEST(ReadOptionsTest, WithoutTheSeekBitThereIsNoSeekAndTheOutputsStay) {
    for (const uint32_t options : {0U, 3U, 7U, kNonBlocking, ~kSeek}) {
        int64_t timeUs = 77;
        ReadOptions::SeekMode mode = ReadOptions::SEEK_FRAME_INDEX;
        EXPECT_FALSE(ReadOptions(options, kTimeUs).getSeekTo(&timeUs, &mode)) << options;
        EXPECT_EQ(77, timeUs);
        EXPECT_EQ(ReadOptions::SEEK_FRAME_INDEX, mode);
    }
}

TEST(ReadOptionsTest, WithTheSeekBitTheTimeAndTheModeAreGiven) {
    for (uint32_t seekMode = 0; seekMode < 5; ++seekMode) {
        int64_t timeUs = 77;
        ReadOptions::SeekMode mode = ReadOptions::SEEK_FRAME_INDEX;
        EXPECT_TRUE(ReadOptions(kSeek | seekMode, kTimeUs).getSeekTo(&timeUs, &mode));
        EXPECT_EQ(kTimeUs, timeUs);
        EXPECT_EQ(static_cast<int>(seekMode), static_cast<int>(mode));
    }
}

TEST(ReadOptionsTest, ModesWithoutANamePassThrough) {
    for (uint32_t seekMode = 5; seekMode < 8; ++seekMode) {
        int64_t timeUs = 77;
        ReadOptions::SeekMode mode = ReadOptions::SEEK_PREVIOUS_SYNC;
        EXPECT_TRUE(ReadOptions(kSeek | seekMode, kTimeUs).getSeekTo(&timeUs, &mode));
        EXPECT_EQ(static_cast<int>(seekMode), static_cast<int>(mode));
    }
}

TEST(ReadOptionsTest, BitsAboveTheModeDoNotChangeIt) {
    int64_t timeUs = 0;
    ReadOptions::SeekMode mode = ReadOptions::SEEK_PREVIOUS_SYNC;
    EXPECT_TRUE(ReadOptions(0xFFFFFFF8U | 2U, kTimeUs).getSeekTo(&timeUs, &mode));
    EXPECT_EQ(ReadOptions::SEEK_CLOSEST_SYNC, mode);
}

TEST(ReadOptionsTest, NonBlockingIsASeparateBit) {
    EXPECT_FALSE(ReadOptions(0, 0).getNonBlocking());
    EXPECT_FALSE(ReadOptions(~kNonBlocking, 0).getNonBlocking());
    EXPECT_TRUE(ReadOptions(kNonBlocking, 0).getNonBlocking());
    EXPECT_TRUE(ReadOptions(kNonBlocking | kSeek | 3, 0).getNonBlocking());
}

}  // namespace
