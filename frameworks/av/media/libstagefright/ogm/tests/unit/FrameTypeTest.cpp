// SPDX-License-Identifier: Apache-2.0
#include "codec/FrameType.h"

#include <gtest/gtest.h>

#include "ElementaryStreams.h"
#include "EventLog.h"

namespace android::ogm::test {
namespace {

class FrameTypeTest : public ::testing::Test {
  protected:
    static int32_t mpeg4(const Bytes& bytes) {
        return mpeg4FrameType(ByteView(bytes.data(), bytes.size()));
    }
    static int32_t mpeg(const Bytes& bytes) {
        return mpegFrameType(ByteView(bytes.data(), bytes.size()));
    }

    EventLog mEvents;
    LogCapture mCapture{mEvents};
};

TEST_F(FrameTypeTest, Mpeg4TypesAreThoseOfTheVopCodingType) {
    EXPECT_EQ(mpeg4({0, 0, 1, 0xB6, 0x10}), kIntraFrame);
    EXPECT_EQ(mpeg4({0, 0, 1, 0xB6, 0x50}), kPredictedFrame);
    EXPECT_EQ(mpeg4({0, 0, 1, 0xB6, 0x90}), kBidirectionalFrame);
    EXPECT_TRUE(mEvents.events().empty());
}

TEST_F(FrameTypeTest, AnMpeg4SpriteIsUnknown) {
    EXPECT_EQ(mpeg4({0, 0, 1, 0xB6, 0xD0}), kUnknownFrame);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("UNKNOW frame type!")}));
}

TEST_F(FrameTypeTest, AnMpeg4PacketOfFourBytesIsNotSearched) {
    EXPECT_EQ(mpeg4({0, 0, 1, 0xB6}), kUnknownFrame);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("can't find MPEG4 frame type from packet data:"
                                                     " 0  0  1 B6  0  0  0  0 ")}));
}

TEST_F(FrameTypeTest, AnEmptyMpeg4PacketIsUnknown) {
    EXPECT_EQ(mpeg4({}), kUnknownFrame);
    EXPECT_EQ(mEvents.lines().size(), 1u);
}

TEST_F(FrameTypeTest, TheWholeMpeg4PacketIsSearched) {
    EXPECT_EQ(mpeg4(joined({pattern(5000, 1), videoObjectPlane(2)})), kBidirectionalFrame);
}

TEST_F(FrameTypeTest, MpegTypesAreThoseOfThePictureCodingType) {
    EXPECT_EQ(mpeg(mpeg2Picture(1)), kIntraFrame);
    EXPECT_EQ(mpeg(mpeg2Picture(2)), kPredictedFrame);
    EXPECT_EQ(mpeg(mpeg2Picture(3)), kBidirectionalFrame);
    for (const uint32_t type : {0u, 4u, 5u, 6u, 7u}) {
        EXPECT_EQ(mpeg(mpeg2Picture(type)), kUnknownFrame) << type;
    }
}

TEST_F(FrameTypeTest, NothingIsLoggedAboutMpegPackets) {
    EXPECT_EQ(mpeg({}), kUnknownFrame);
    EXPECT_EQ(mpeg({0, 0, 1, 0}), kUnknownFrame);
    EXPECT_EQ(mpeg({0, 0, 1, 0, 0}), kUnknownFrame);  // ends before the coding type
    EXPECT_EQ(mpeg(pattern(100, 1)), kUnknownFrame);
    EXPECT_TRUE(mEvents.events().empty());
}

}  // namespace
}  // namespace android::ogm::test
