// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketQueue.h"

#include "ElementaryStreams.h"
#include "LogTest.h"
#include "OgmFile.h"
#include "Views.h"
#include "codec/FrameType.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test::packet_queue_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 9;
constexpr size_t k64KiB = 65536;

/** A queue that a test fills; packets differ in their bytes. */
class PacketQueueTest : public LogTest {
  protected:
    static void append(PacketQueue& packets, const Bytes& bytes) {
        ByteBuffer piece(viewOf(bytes));
        packets.appendBytes(&piece);
    }
    void append(const Bytes& bytes) { append(mPackets, bytes); }

    static void add(PacketQueue& packets, const Bytes& bytes, int64_t timeUs = 0) {
        packets.beginPacket(timeUs, 0);
        append(packets, bytes);
    }
    void add(const Bytes& bytes) { add(mPackets, bytes); }

    /** Removes the complete packets and returns their bytes. */
    std::vector<Bytes> takeAll() {
        std::vector<Bytes> all;
        for (; mPackets.size() > 1; mPackets.popFront()) {
            all.push_back(bytesOf(mPackets.front().bytes));
        }
        return all;
    }

    std::vector<LogLine> growthLines() const { return mEvents.linesBeginning("Track Tyep"); }
    static LogLine grownTo(size_t capacity) {
        return infoLine(formatted("Track Tyep[22] resizing mPacketBuff to size %zu", capacity));
    }

    PacketQueue mPackets{kSerialNo, OGV_VIDEO_H264};
};

TEST_F(PacketQueueTest, APacketGetsItsBytesWhenTheNextOneBegins) {
    mPackets.beginPacket(1000, 25);
    append({1, 2});
    append({});
    append({3});
    EXPECT_EQ(mPackets.size(), 1U);
    EXPECT_TRUE(mPackets.front().bytes.empty());
    mPackets.beginPacket(2000, 26);
    EXPECT_EQ(mPackets.size(), 2U);
    EXPECT_EQ(bytesOf(mPackets.front().bytes), (Bytes{1, 2, 3}));
    EXPECT_EQ(mPackets.front().serialNo, kSerialNo);
    EXPECT_EQ(mPackets.front().timeUs, 1000);
    EXPECT_EQ(mPackets.front().granulePosition, 25);
}

TEST_F(PacketQueueTest, EachPacketIsLoggedWhenItBeginsAndTheQueueWhenOneCloses) {
    mPackets.beginPacket(1000, 25);
    mPackets.beginPacket(2000, ~uint64_t{0});
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("packet info:isVideo:1,index:0,GranulePosition:25,serialNo:9,"
                                     "timeUs:1000"),
                            infoLine("NumOfVPackets:2,mPacketsQue size:1"),
                            infoLine("packet info:isVideo:1,index:1,GranulePosition:-1,serialNo:9,"
                                     "timeUs:2000")));
}

TEST_F(PacketQueueTest, AudioAndSerialNumbersFrom2To31OnAreLoggedAsSuch) {
    PacketQueue audio(0xFFFFFFFE, OGA_AUDIO_PCM);
    audio.beginPacket(0, 0);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine(
                        "packet info:isVideo:0,index:0,GranulePosition:0,serialNo:-2,timeUs:0")));
}

TEST_F(PacketQueueTest, APacketOfOnePieceIsNotCopied) {
    ByteBuffer piece = mPackets.makePiece(100);
    const uint8_t* const place = piece.data();
    mPackets.beginPacket(0, 0);
    mPackets.appendBytes(&piece);
    add({1});
    EXPECT_EQ(mPackets.front().bytes.view().data(), place);
}

TEST_F(PacketQueueTest, ATailWithoutABeginningIsForgottenWhenTheFirstPacketBegins) {
    append({9, 9, 9});
    add({1});
    add({2});
    EXPECT_THAT(takeAll(), ElementsAre(Bytes{1}));
    EXPECT_THAT(mEvents.linesBeginning("NumOfVPackets"),
                ElementsAre(infoLine("NumOfVPackets:2,mPacketsQue size:1")));
}

TEST_F(PacketQueueTest, BytesAfterAPacketAreAppendedToIt) {
    add({1});
    append({9, 9});
    add({2});
    EXPECT_THAT(takeAll(), ElementsAre(Bytes{1, 9, 9}));
}

TEST_F(PacketQueueTest, TheBytesOfAnOpenPacketThatWasTakenOutBeginTheNextOne) {
    add({1});
    mPackets.popFront();
    add({2});
    add({3});
    EXPECT_THAT(takeAll(), ElementsAre(Bytes{1, 2}));
}

TEST_F(PacketQueueTest, ClearingDropsTheOpenPacketTooAndRestarts) {
    add({1});
    add({2});
    mPackets.clear();
    EXPECT_EQ(mPackets.size(), 0U);
    mEvents.clear();
    append({9});
    add({3});
    EXPECT_THAT(mEvents.linesBeginning("NumOfVPackets"), IsEmpty());
    add({4});
    EXPECT_THAT(takeAll(), ElementsAre(Bytes{3}));
}

TEST_F(PacketQueueTest, ItsCapacityIsLoggedInStepsOf64KiBAndKept) {
    add(pattern(k64KiB, 1));
    append({1});
    EXPECT_THAT(growthLines(), ElementsAre(grownTo(k64KiB), grownTo(2 * k64KiB)));
    mPackets.clear();
    add(pattern(2 * k64KiB, 1));
    EXPECT_EQ(growthLines().size(), 2U);
}

TEST_F(PacketQueueTest, AnEmptyFirstPieceMakesABufferWithoutCapacity) {
    add({});
    append({1});
    EXPECT_THAT(growthLines(), ElementsAre(grownTo(0), grownTo(k64KiB)));
}

TEST_F(PacketQueueTest, ThePieceThatIsGivenBackMakesRoomForTheNext) {
    ByteBuffer piece = mPackets.makePiece(100);
    const uint8_t* const place = piece.data();
    mPackets.giveBack(&piece);
    EXPECT_EQ(piece.data(), nullptr);
    EXPECT_EQ(mPackets.makePiece(200).data(), place);
}

TEST_F(PacketQueueTest, APieceThatIsGivenBackTwiceLeavesTheNextOneItsRoom) {
    ByteBuffer piece = mPackets.makePiece(100);
    mPackets.giveBack(&piece);
    const ByteBuffer next = mPackets.makePiece(100);
    mPackets.giveBack(&piece);
    EXPECT_NE(mPackets.makePiece(100).data(), next.view().data());
}

TEST_F(PacketQueueTest, AccessUnitsAreQueuedWholeAndWithoutALine) {
    PacketQueue audio(kSerialNo, OGA_AUDIO_AC3);
    audio.addAccessUnit(1000, 25, ByteBuffer(viewOf({1, 2})));
    EXPECT_EQ(audio.size(), 1U);
    EXPECT_EQ(bytesOf(audio.front().bytes), (Bytes{1, 2}));
    EXPECT_EQ(audio.front().serialNo, kSerialNo);
    EXPECT_EQ(audio.front().timeUs, 1000);
    EXPECT_EQ(audio.front().granulePosition, 25);
    EXPECT_EQ(audio.front().frameType, kUnknownFrame);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

/** The frame types of packets. */
class QueuedFrameTypeTest : public PacketQueueTest {
  protected:
    /** The type that a packet gets. The log then has only the lines about it. */
    int32_t typeOf(uint32_t streamType, const Bytes& packet) {
        PacketQueue packets(kSerialNo, streamType);
        add(packets, packet);
        mEvents.clear();
        packets.beginPacket(0, 0);
        return packets.front().frameType;
    }

    bool wasTyped() const {
        return !mEvents.linesBeginning("can't find").empty() ||
               !mEvents.linesBeginning("UNKNOW").empty();
    }
};

TEST_F(QueuedFrameTypeTest, Mpeg4AndMpegVideoIsTypedByItsPictures) {
    EXPECT_EQ(typeOf(OGV_VIDEO_MP4, dataPacket(kPlainPacket, videoObjectPlane(2))),
              kBidirectionalFrame);
    EXPECT_EQ(typeOf(OGV_VIDEO_MPEG, dataPacket(kPlainPacket, mpeg2Picture(2))), kPredictedFrame);
}

TEST_F(QueuedFrameTypeTest, OtherVideoAndAudioIsNotTyped) {
    for (uint32_t type = 0; type <= 30; ++type) {
        if (!isFrameTypedVideo(type)) {
            EXPECT_EQ(typeOf(type, dataPacket(kPlainPacket, videoObjectPlane(0))), kUnknownFrame);
            EXPECT_FALSE(wasTyped()) << type;
        }
    }
}

TEST_F(QueuedFrameTypeTest, TheHeaderByteBelongsToTheBytesThatAreSearched) {
    // It is the first zero of the start code.
    EXPECT_EQ(typeOf(OGV_VIDEO_MP4, {0, 0, 1, 0xB6, 0x10}), kIntraFrame);
}

TEST_F(QueuedFrameTypeTest, AHeaderByteOfEightMakesASyncFrameOfAnyVideoAndOfNoAudio) {
    for (uint32_t type = 0; type <= 30; ++type) {
        EXPECT_EQ(typeOf(type, {0x08}), isVideoPacketType(type) ? kIntraFrame : kUnknownFrame)
                << type;
    }
    for (const uint8_t other : {0x00, 0x09, 0x0C, 0x88}) {
        EXPECT_EQ(typeOf(OGV_VIDEO_H264, {other}), kUnknownFrame);
    }
}

TEST_F(QueuedFrameTypeTest, AHeaderByteOfEightOverridesTheTypeButNotItsLine) {
    EXPECT_EQ(typeOf(OGV_VIDEO_MP4, {0x08, 0, 0, 1, 0xB6, 0xD0, 0}), kIntraFrame);
    EXPECT_TRUE(wasTyped());
}

/** The B frames that follow the oldest packet. */
class FollowingFramesTest : public PacketQueueTest {
  protected:
    /** Queues MPEG-4 frames of these VOP coding types and counts the following B frames. */
    uint8_t following(const std::vector<uint32_t>& codingTypes) {
        PacketQueue packets(kSerialNo, OGV_VIDEO_MP4);
        for (const uint32_t type : codingTypes) {
            add(packets, dataPacket(kPlainPacket, videoObjectPlane(type)));
        }
        return packets.countFollowingFrameType3();
    }

    static constexpr uint32_t kI = 0;
    static constexpr uint32_t kP = 1;
    static constexpr uint32_t kB = 2;
};

TEST_F(FollowingFramesTest, AreCountedUpToTheNextOther) {
    EXPECT_EQ(following({kI, kB, kB, kP, kB, kB}), 2);
    EXPECT_EQ(following({kI, kP, kB, kB}), 0);
    EXPECT_EQ(following({kP, kB, kP, kP}), 1);
}

TEST_F(FollowingFramesTest, TheOpenPacketIsNeverOneOfThem) {
    EXPECT_EQ(following({kI, kB, kB}), 1);
    EXPECT_EQ(following({kI, kB}), 0);
    EXPECT_EQ(following({kI}), 0);
}

TEST_F(FollowingFramesTest, TheCountEndsWhereItsEightBitIndexWraps) {
    std::vector<uint32_t> codingTypes(300, kB);
    codingTypes.front() = kP;
    EXPECT_EQ(following(codingTypes), 255);
}

}  // namespace
}  // namespace android::ogm::test::packet_queue_test
