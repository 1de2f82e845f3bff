// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test {
namespace {

using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 1;
const LogLine kUnknownType = infoLine("UNKNOW frame type!");

/** How a frame is typed, seen in what the track makes of it. */
class FrameTypeTest : public PluginTest {
  protected:
    /** The type that `packet` is given as the first frame of a track: 1, 3, or 2 for any other. */
    int typeOf(const char* fourcc, const Bytes& packet) {
        VideoHeader header;
        header.subtype = fourcc;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        // The first page has granule position 25 already when the packet comes.
        file.addPages(kSerialNo, {dataPacket(kSyncPacket, {})}, 25);
        file.addPages(kSerialNo, {packet, dataPacket(kSyncPacket, {}), dataPacket(kSyncPacket, {})},
                      26);
        OpenedFile opened = open(file);
        auto track = opened->startedTrack(0);
        mEvents.clear();
        const auto results = track->drain();
        if (results.size() != 2) {
            ADD_FAILURE() << "two frames were expected";
            return -1;
        }
        if (results[1].isSyncFrame == 1) {
            return 1;
        }
        return results[1].timeUs == 25 * 40000 - 40000 ? 3 : 2;
    }

    int mpeg4TypeOf(const Bytes& payload) {
        return typeOf("FMP4", dataPacket(kPlainPacket, payload));
    }
    int mpegTypeOf(const Bytes& payload) {
        return typeOf("mpg2", dataPacket(kPlainPacket, payload));
    }

    std::vector<LogLine> typingLines() const {
        std::vector<LogLine> lines = mEvents.linesBeginning("can't find");
        const std::vector<LogLine> unknown = mEvents.linesBeginning("UNKNOW");
        lines.insert(lines.end(), unknown.begin(), unknown.end());
        return lines;
    }
};

TEST_F(FrameTypeTest, AnMpeg4PictureIsTypedByItsTopTwoBits) {
    EXPECT_EQ(mpeg4TypeOf({0, 0, 1, 0xB6, 0x10, 0}), 1);
    EXPECT_EQ(mpeg4TypeOf({0, 0, 1, 0xB6, 0x50, 0}), 2);
    EXPECT_EQ(mpeg4TypeOf({0, 0, 1, 0xB6, 0x90, 0}), 3);
}

TEST_F(FrameTypeTest, AnMpeg4SpriteIsUnknownAndLogged) {
    EXPECT_EQ(mpeg4TypeOf({0, 0, 1, 0xB6, 0xD0, 0}), 2);
    EXPECT_EQ(mEvents.count(kUnknownType), 1U);
}

TEST_F(FrameTypeTest, TheFirstMpeg4PictureOfAPacketCounts) {
    EXPECT_EQ(mpeg4TypeOf(joined({groupOfVop(), videoObjectPlane(2), videoObjectPlane(0)})), 3);
}

TEST_F(FrameTypeTest, BytesThatResembleAStartCodeArePassedOver) {
    EXPECT_EQ(mpeg4TypeOf({1, 1, 0, 1, 0xB6, 0x10, 0, 0, 1, 0xB5, 0, 0, 0, 1, 0xB6, 0x90}), 3);
    EXPECT_EQ(mpegTypeOf({1, 1, 0, 1, 0, 0, 0x0F, 0, 0, 1, 1, 0, 0, 0, 1, 0, 0, 0x17}), 2);
}

TEST_F(FrameTypeTest, TheHeaderByteBelongsToTheBytesThatAreSearched) {
    // The packet's header byte is the first zero of the start code.
    EXPECT_EQ(mpeg4TypeOf({0, 1, 0xB6, 0x10}), 1);
}

TEST_F(FrameTypeTest, AnMpeg4StartCodeWithoutAByteBehindItIsNotFound) {
    EXPECT_EQ(mpeg4TypeOf({9, 9, 9, 0, 0, 1, 0xB6}), 2);
    EXPECT_EQ(mEvents.count(infoLine("can't find MPEG4 frame type from packet data:"
                                     " 0  9  9  9  0  0  1 B6 ")),
              1U);
}

TEST_F(FrameTypeTest, AnMpeg4StartCodeWithOneByteBehindItIsFound) {
    EXPECT_EQ(mpeg4TypeOf({9, 9, 9, 0, 0, 1, 0xB6, 0x90}), 3);
}

TEST_F(FrameTypeTest, AnMpeg4PacketWithoutPictureIsLoggedWithItsFirstEightBytes) {
    EXPECT_EQ(mpeg4TypeOf({0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xAB, 0xCD}), 2);
    EXPECT_EQ(mEvents.count(infoLine("can't find MPEG4 frame type from packet data:"
                                     " 0 11 22 33 44 55 66 AB ")),
              1U);
}

TEST_F(FrameTypeTest, AnMpeg4PacketOfFourBytesIsLoggedWithZerosInPlaceOfTheMissing) {
    EXPECT_EQ(mpeg4TypeOf({0x00, 0x01, 0xB6}), 2);
    EXPECT_EQ(mEvents.count(infoLine("can't find MPEG4 frame type from packet data:"
                                     " 0  0  1 B6  0  0  0  0 ")),
              1U);
}

TEST_F(FrameTypeTest, AnMpegPictureIsTypedByItsCodingType) {
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0x00, 0x0F}), 1);
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0x00, 0x17}), 2);
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0x00, 0x1F}), 3);
}

TEST_F(FrameTypeTest, OnlyThreeBitsOfAnMpegPictureAreTheCodingType) {
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0xFF, 0xC8}), 1);
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0xFF, 0x27}), 2);  // coding type 4
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0, 0xFF, 0x00}), 2);  // coding type 0
}

TEST_F(FrameTypeTest, AnMpegPacketWithoutPictureIsNotLogged) {
    EXPECT_EQ(mpegTypeOf({0, 0, 1, 0xB3, 0x00, 0x0F}), 2);
    EXPECT_EQ(mpegTypeOf({1, 2}), 2);
    EXPECT_THAT(typingLines(), IsEmpty());
}

TEST_F(FrameTypeTest, AnMpegPictureCutOffBeforeItsCodingTypeIsUnknown) {
    EXPECT_EQ(mpegTypeOf({9, 0, 0, 1, 0, 0xFF}), 2);
    EXPECT_THAT(typingLines(), IsEmpty());
}

TEST_F(FrameTypeTest, OtherVideoIsNotTyped) {
    EXPECT_EQ(typeOf("H264", dataPacket(kPlainPacket, videoObjectPlane(0))), 2);
    EXPECT_THAT(typingLines(), IsEmpty());
}

TEST_F(FrameTypeTest, AHeaderByteOfEightOverridesTheTypeButNotTheLogLine) {
    EXPECT_EQ(typeOf("FMP4", dataPacket(kSyncPacket, {0, 0, 1, 0xB6, 0xD0, 0})), 1);
    EXPECT_EQ(mEvents.count(kUnknownType), 1U);
}

}  // namespace
}  // namespace android::ogm::test
