// SPDX-License-Identifier: Apache-2.0
#include "codec/FrameType.h"

#include "ElementaryStreams.h"
#include "LogTest.h"
#include "Views.h"

namespace android::ogm::test::frame_type_test {
namespace {

class FrameTypeTest : public LogTest {
  protected:
    static int32_t mpeg4(const Bytes& bytes) { return mpeg4FrameType(viewOf(bytes)); }
    static int32_t mpeg(const Bytes& bytes) { return mpegFrameType(viewOf(bytes)); }
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
    EXPECT_EQ(mEvents.lines().size(), 1U);
}

TEST_F(FrameTypeTest, AnMpeg4PacketWithoutPictureIsLoggedWithItsFirstEightBytes) {
    EXPECT_EQ(mpeg4({0x09, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xAB, 0xCD}), kUnknownFrame);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("can't find MPEG4 frame type from packet data:"
                                                     " 9 11 22 33 44 55 66 AB ")}));
}

TEST_F(FrameTypeTest, AnMpeg4StartCodeIsFoundWithAByteAfterIt) {
    EXPECT_EQ(mpeg4({9, 9, 9, 0, 0, 1, 0xB6}), kUnknownFrame);
    EXPECT_EQ(mpeg4({9, 9, 9, 0, 0, 1, 0xB6, 0x90}), kBidirectionalFrame);
}

TEST_F(FrameTypeTest, TheFirstMpeg4PictureOfAPacketDecides) {
    EXPECT_EQ(mpeg4(joined({groupOfVop(), videoObjectPlane(2), videoObjectPlane(0)})),
              kBidirectionalFrame);
}

TEST_F(FrameTypeTest, BytesThatResembleAStartCodeArePassedOver) {
    EXPECT_EQ(mpeg4({1, 1, 0, 1, 0xB6, 0x10, 0, 0, 1, 0xB5, 0, 0, 0, 1, 0xB6, 0x90}),
              kBidirectionalFrame);
    EXPECT_EQ(mpeg({1, 1, 0, 1, 0, 0, 0x0F, 0, 0, 1, 1, 0, 0, 0, 1, 0, 0, 0x17}), kPredictedFrame);
}

TEST_F(FrameTypeTest, OnlyThreeBitsOfAnMpegPictureAreTheCodingType) {
    EXPECT_EQ(mpeg({0, 0, 1, 0, 0xFF, 0xC8}), kIntraFrame);
    EXPECT_EQ(mpeg({0, 0, 1, 0, 0xFF, 0x27}), kUnknownFrame);
}

TEST_F(FrameTypeTest, TheWholeMpeg4PacketIsSearched) {
    EXPECT_EQ(mpeg4(joined({pattern(5000, 1), videoObjectPlane(2)})), kBidirectionalFrame);
}

TEST_F(FrameTypeTest, MpegTypesAreThoseOfThePictureCodingType) {
    EXPECT_EQ(mpeg(mpeg2Picture(1)), kIntraFrame);
    EXPECT_EQ(mpeg(mpeg2Picture(2)), kPredictedFrame);
    EXPECT_EQ(mpeg(mpeg2Picture(3)), kBidirectionalFrame);
    for (const uint32_t type : {0U, 4U, 5U, 6U, 7U}) {
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
}  // namespace android::ogm::test::frame_type_test
