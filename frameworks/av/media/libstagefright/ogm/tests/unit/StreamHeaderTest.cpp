// SPDX-License-Identifier: Apache-2.0
#include "stream/StreamHeader.h"

#include <gtest/gtest.h>

#include "OgmStreamHeaders.h"
#include "Views.h"

namespace android::ogm::test::stream_header_test {
namespace {

StreamHeader parsed(const Bytes& bytes) {
    return StreamHeader(viewOf(bytes));
}

int32_t frameRate(uint64_t timeUnit, uint64_t samplesPerUnit) {
    VideoHeader header;
    header.timeUnit = timeUnit;
    header.samplesPerUnit = samplesPerUnit;
    return parsed(header.bytes()).frameRate();
}

int32_t sampleRate(uint64_t timeUnit, uint64_t samplesPerUnit) {
    AudioHeader header;
    header.timeUnit = timeUnit;
    header.samplesPerUnit = samplesPerUnit;
    return parsed(header.bytes()).sampleRate();
}

TEST(StreamHeaderTest, TheFieldsOfAVideoHeaderAreReadAtTheirPlaces) {
    VideoHeader header;
    header.subtype = "avc1";
    header.headerSize = 0x01020304;
    header.timeUnit = 0x1122334455667788;
    header.samplesPerUnit = 0x99AABBCCDDEEFF00;
    header.defaultLength = 0x80000001;
    header.bufferSize = 0x7FFFFFFF;
    header.bitsPerSample = 0xFEDC;
    header.padding = 0xBA98;
    header.width = 0x80000000;
    header.height = 0x00010002;
    const StreamHeader fields = parsed(header.bytes());
    EXPECT_EQ(fields.subtype, 0x61766331U);
    EXPECT_EQ(fields.headerSize, 0x01020304);
    EXPECT_EQ(fields.timeUnit, 0x1122334455667788U);
    EXPECT_EQ(fields.samplesPerUnit, 0x99AABBCCDDEEFF00U);
    EXPECT_EQ(fields.defaultLength, -0x7FFFFFFF);
    EXPECT_EQ(fields.bufferSize, 0x7FFFFFFF);
    EXPECT_EQ(fields.bitsPerSample, 0xFEDC);
    EXPECT_EQ(fields.padding, 0xBA98);
    EXPECT_EQ(fields.width, -0x7FFFFFFF - 1);
    EXPECT_EQ(fields.height, 0x00010002);
}

TEST(StreamHeaderTest, TheFieldsOfAnAudioHeaderAreReadAtTheirPlaces) {
    AudioHeader header;
    header.channels = 0xFFFE;
    header.blockAlign = 0xABCD;
    header.averageBytesPerSecond = 0x12348765;
    const StreamHeader fields = parsed(header.bytes());
    EXPECT_EQ(fields.channels, 0xFFFE);
    EXPECT_EQ(fields.blockAlign, 0xABCD);
    EXPECT_EQ(fields.averageBytesPerSecond, 0x8765);
}

TEST(StreamHeaderTest, EveryFieldOfAnEmptyPacketIsZero) {
    const StreamHeader fields = parsed({});
    EXPECT_EQ(fields.subtype, 0U);
    EXPECT_EQ(fields.timeUnit, 0U);
    EXPECT_EQ(fields.bitsPerSample, 0);
    EXPECT_EQ(fields.height, 0);
    EXPECT_EQ(fields.frameRate(), 0);
    EXPECT_EQ(fields.sampleRate(), 0);
}

TEST(StreamHeaderTest, TheFrameRateIsTruncated) {
    EXPECT_EQ(frameRate(400000, 1), 25);
    EXPECT_EQ(frameRate(333667, 1), 29);
}

TEST(StreamHeaderTest, AVideoTimeUnitOfZeroGivesAFrameRateOfZero) {
    EXPECT_EQ(frameRate(0, 1), 0);
}

TEST(StreamHeaderTest, OnlyTheLow32BitsOfTheVideoTimeUnitAreUsed) {
    EXPECT_EQ(frameRate(0x100000000, 1), 0);
    EXPECT_EQ(frameRate(0x100000000 + 400000, 1), 25);
}

TEST(StreamHeaderTest, TheFrameRateProductWrapsAt32Bits) {
    // 1000 x 10,000,000 is 1,410,065,408 in 32 bits.
    EXPECT_EQ(frameRate(100000, 1000), 14100);
    // 300 x 10,000,000 is -1,294,967,296 as a signed number; the quotient is truncated.
    EXPECT_EQ(frameRate(1000000, 300), -1294);
    EXPECT_EQ(frameRate(400000, 0x100000001), 25);
}

TEST(StreamHeaderTest, ANegativeVideoTimeUnitGivesANegativeFrameRate) {
    EXPECT_EQ(frameRate(0xFFFFFFFF - 400000 + 1, 1), -25);
}

TEST(StreamHeaderTest, TheMostNegativeProductDividedByMinusOneIsItself) {
    // 10,000,000 is 2^7 x 78125: with 2^24 samples only bit 31 of the product is set.
    EXPECT_EQ(frameRate(0xFFFFFFFF, 1U << 24), -2147483647 - 1);
}

TEST(StreamHeaderTest, TheSampleRateIsSamplesPerSecond) {
    EXPECT_EQ(sampleRate(10000000, 44100), 44100);
    EXPECT_EQ(sampleRate(20000000, 44101), 22050);
    EXPECT_EQ(sampleRate(0, 44100), 0);
}

TEST(StreamHeaderTest, TheSampleRateIsComputedIn64BitsAndCutTo32) {
    EXPECT_EQ(sampleRate(1, 215), -2144967296);  // 2,150,000,000
    EXPECT_EQ(sampleRate(10000000, 0xFFFFFFFF), -1);
    // The product wraps at 64 bits: 2^57 x 10,000,000 is 0 modulo 2^64.
    EXPECT_EQ(sampleRate(10000000, uint64_t{1} << 57), 0);
}

}  // namespace
}  // namespace android::ogm::test::stream_header_test
