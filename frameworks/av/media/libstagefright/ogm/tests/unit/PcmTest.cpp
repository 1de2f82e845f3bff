// SPDX-License-Identifier: Apache-2.0
#include "audio/Pcm.h"

#include <media/stagefright/MediaBufferGroup.h>

#include <algorithm>

#include "Format.h"
#include "LogTest.h"
#include "Views.h"
#include "base/MediaBuffers.h"

namespace android::ogm::test::pcm_test {
namespace {

Bytes narrowed(Bytes samples) {
    samples.resize(narrowPcm24(samples.data(), samples.size()));
    return samples;
}

Bytes widened(const Bytes& samples) {
    Bytes output(2 * samples.size());
    widenPcm8(viewOf(samples), output.data());
    return output;
}

TEST(PcmTest, TwentyFourBitSamplesKeepTheirUpperSixteen) {
    EXPECT_EQ(narrowed({1, 2, 3, 4, 5, 6}), (Bytes{2, 3, 5, 6}));
    EXPECT_EQ(narrowed({0xFF, 0x80, 0x7F}), (Bytes{0x80, 0x7F}));
}

TEST(PcmTest, BytesAfterTheLastWholeSampleAreDropped) {
    EXPECT_EQ(narrowed({1, 2, 3, 4}), (Bytes{2, 3}));
    EXPECT_EQ(narrowed({1, 2}), Bytes{});
    EXPECT_EQ(narrowed({}), Bytes{});
}

TEST(PcmTest, EveryEightBitValueIsCentredAndShifted) {
    for (int value = 0; value < 256; ++value) {
        const Bytes result = widened({static_cast<uint8_t>(value)});
        const auto sample = static_cast<int16_t>(result[0] | result[1] << 8);
        EXPECT_EQ(sample, (value - 128) * 256) << value;
    }
}

TEST(PcmTest, NothingIsWidenedToNothing) {
    EXPECT_EQ(widened({}), Bytes{});
}

/** Converts a buffer of a group. */
class ReworkPcmTest : public LogTest {
  protected:
    ReworkPcmTest() {
        mHelper.init(1, 256, 4);
        mBuffer = acquireBuffer(&mHelper, 0);
        AMediaFormat_setInt64(mBuffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US, 1000);
        AMediaFormat_setInt64(mBuffer->meta_data(), AMEDIAFORMAT_KEY_TARGET_TIME, 0);
    }
    ~ReworkPcmTest() override { mBuffer->release(); }

    Bytes reworked(uint16_t bitsPerSample, const Bytes& samples) {
        std::copy(samples.begin(), samples.end(), static_cast<uint8_t*>(mBuffer->data()));
        mBuffer->set_range(0, samples.size());
        EXPECT_EQ(reworkPcm(bitsPerSample, &mHelper, &mBuffer), AMEDIA_OK);
        EXPECT_EQ(mBuffer->range_offset(), 0U);
        return bytesOf(
                ByteView(static_cast<const uint8_t*>(mBuffer->data()), mBuffer->range_length()));
    }

    std::optional<int64_t> targetTimeUs() {
        return int64Of(mBuffer->meta_data(), AMEDIAFORMAT_KEY_TARGET_TIME);
    }

    MediaBufferGroup mGroup;
    MediaBufferGroupHelper mHelper{mGroup.wrap()};
    MediaBufferHelper* mBuffer = nullptr;
};

TEST_F(ReworkPcmTest, OtherWidthsStayAsTheyAre) {
    for (const uint16_t bits : {0, 16, 20, 32}) {
        EXPECT_EQ(reworked(bits, {1, 2, 3, 4}), (Bytes{1, 2, 3, 4})) << bits;
    }
    EXPECT_TRUE(mEvents.lines().empty());
}

TEST_F(ReworkPcmTest, TwentyFourBitsBecomeSixteenInTheSameBuffer) {
    const MediaBufferHelper* const before = mBuffer;
    EXPECT_EQ(reworked(24, {1, 2, 3, 4, 5, 6, 7}), (Bytes{2, 3, 5, 6}));
    EXPECT_EQ(mBuffer, before);
    EXPECT_EQ(timeOf(mBuffer), 1000);
    EXPECT_EQ(targetTimeUs(), 0);
    EXPECT_EQ(reworked(24, {1, 2}), Bytes{});
    EXPECT_TRUE(mEvents.lines().empty());
}

TEST_F(ReworkPcmTest, EightBitsBecomeSixteenInABufferWithOnlyItsTime) {
    const MediaBufferHelper* const before = mBuffer;
    EXPECT_EQ(reworked(8, {0x80, 0x00}), (Bytes{0x00, 0x00, 0x00, 0x80}));
    EXPECT_NE(mBuffer, before);
    EXPECT_EQ(timeOf(mBuffer), 1000);
    EXPECT_EQ(targetTimeUs(), std::nullopt);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("OGA_AUDIO_PCM,mBitsPerSample == 8")}));
    // The 8-bit buffer was released and is reused.
    MediaBufferHelper* const next = acquireBuffer(&mHelper, 0);
    EXPECT_EQ(next, before);
    next->release();
}

TEST_F(ReworkPcmTest, AReusedBufferKeepsNoEarlierEntries) {
    MediaBufferHelper* const used = acquireBuffer(&mHelper, 0);
    AMediaFormat_setInt64(used->meta_data(), AMEDIAFORMAT_KEY_TARGET_TIME, 7);
    used->release();
    EXPECT_EQ(reworked(8, {0x80}), (Bytes{0x00, 0x00}));
    EXPECT_EQ(mBuffer, used);
    EXPECT_EQ(targetTimeUs(), std::nullopt);
}

TEST_F(ReworkPcmTest, NothingOfEightBitsStaysNothing) {
    EXPECT_EQ(reworked(8, {}), Bytes{});
}

}  // namespace
}  // namespace android::ogm::test::pcm_test
