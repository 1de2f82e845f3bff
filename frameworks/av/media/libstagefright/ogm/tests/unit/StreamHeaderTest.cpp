// SPDX-License-Identifier: Apache-2.0
#include "stream/StreamHeader.h"

#include <gtest/gtest.h>

#include "OgmStreamHeaders.h"
#include "Views.h"

namespace android::ogm::test {
namespace {

StreamHeader parsed(const Bytes& bytes) {
    return StreamHeader(viewOf(bytes));
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
    EXPECT_EQ(fields.subtype, 0x61766331u);
    EXPECT_EQ(fields.headerSize, 0x01020304);
    EXPECT_EQ(fields.timeUnit, 0x1122334455667788u);
    EXPECT_EQ(fields.samplesPerUnit, 0x99AABBCCDDEEFF00u);
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
    EXPECT_EQ(fields.subtype, 0u);
    EXPECT_EQ(fields.timeUnit, 0u);
    EXPECT_EQ(fields.bitsPerSample, 0);
    EXPECT_EQ(fields.height, 0);
    EXPECT_EQ(fields.frameRate(), 0);
    EXPECT_EQ(fields.sampleRate(), 0);
}

}  // namespace
}  // namespace android::ogm::test
