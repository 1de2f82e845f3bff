// SPDX-License-Identifier: Apache-2.0
#include "audio/Pcm.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace android::ogm::test {
namespace {

Bytes narrowed(Bytes samples) {
    samples.resize(narrowPcm24(samples.data(), samples.size()));
    return samples;
}

Bytes widened(const Bytes& samples) {
    Bytes output(2 * samples.size());
    widenPcm8(ByteView(samples.data(), samples.size()), output.data());
    return output;
}

TEST(PcmTest, TwentyFourBitSamplesKeepTheirUpperSixteen) {
    EXPECT_EQ(narrowed({1, 2, 3, 4, 5, 6}), (Bytes{2, 3, 5, 6}));
    EXPECT_EQ(narrowed({0xFF, 0x80, 0x7F}), (Bytes{0x80, 0x7F}));
}

TEST(PcmTest, BytesBehindTheLastWholeSampleAreDropped) {
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

}  // namespace
}  // namespace android::ogm::test
