// SPDX-License-Identifier: Apache-2.0
#include "OgmTrack.h"

#include <media/stagefright/MediaBufferGroup.h>

#include <cstdlib>
#include <memory>

#include "Bytes.h"
#include "ChildProcess.h"
#include "Format.h"
#include "LogTest.h"
#include "MemorySource.h"
#include "OgmExtractor.h"
#include "Views.h"

namespace android::ogm::test::ogm_track_test {
namespace {

constexpr uint32_t kSerialNo = 1;
constexpr uint16_t kBitsPerSample = 16;
constexpr int64_t kNoTarget = -1;
constexpr std::chrono::milliseconds kEndlessCall(100);
constexpr bool kNewPacket = true;
constexpr bool kSeeking = true;

Bytes bytesOf(MediaBufferHelper* buffer) {
    const auto* data = static_cast<const uint8_t*>(buffer->data()) + buffer->range_offset();
    return Bytes(data, data + buffer->range_length());
}

/** A track of any stream type, even one that no file has; tests pass its packets directly. */
class OgmTrackTest : public LogTest {
  protected:
    ~OgmTrackTest() override {
        if (mTable != nullptr) {
            mTable->free(mTable->data);
            ::free(mTable);
        }
    }

    OgmTrack& startTrack(uint32_t type, int64_t timeUnit = 0, int64_t sampleRate = 0) {
        OgmStreamInfo stream;
        stream.mSerialNo = kSerialNo;
        stream.mType = type;
        stream.mTimeUnit = timeUnit;
        stream.mSampleRate = sampleRate;
        mTrack = new OgmTrack(&mExtractor, stream, kBitsPerSample, false);
        mTable = wrap(mTrack);
        mTable->start(mTable->data, mGroup.wrap());
        mTrack->updateGranulePosition(0, 1, false);
        mEvents.clear();
        return *mTrack;
    }

    /** A started track with this packet and another one in its queue. */
    OgmTrack& trackWith(uint32_t type, const Bytes& packet) {
        OgmTrack& track = startTrack(type);
        append(packet, kNewPacket);
        append({0, 0, 0, 0}, kNewPacket);
        mEvents.clear();
        return track;
    }

    media_status_t append(const Bytes& packet, bool isNewPacket, bool isSeeking = false) {
        ByteBuffer piece(viewOf(packet));
        return mTrack->appendData(&piece, isNewPacket, isSeeking);
    }

    MemorySource mSource{Bytes{}};
    OgmExtractor mExtractor{std::make_unique<DataSourceHelper>(mSource.table())};
    MediaBufferGroup mGroup;
    OgmTrack* mTrack = nullptr;
    CMediaTrack* mTable = nullptr;
};

TEST_F(OgmTrackTest, ATrackOfAStreamThatTheExtractorDoesNotKnowHasNoFormat) {
    const OgmTrack& track = startTrack(OGV_VIDEO_H264);
    static_cast<void>(track);
    const Format format;
    EXPECT_EQ(mTrack->getFormat(format.get()), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("getFormat: Track type[22]")}));
}

TEST_F(OgmTrackTest, AMissingPacketIsMalformed) {
    EXPECT_EQ(startTrack(OGV_VIDEO_H264).appendData(nullptr, kNewPacket, !kSeeking),
              AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("appendData Buffer null\n")}));
}

TEST_F(OgmTrackTest, AMissingPacketOfReframedAudioIsMalformedToo) {
    EXPECT_EQ(startTrack(OGA_AUDIO_AC3).appendData(nullptr, kNewPacket, !kSeeking),
              AMEDIA_ERROR_MALFORMED);
}

TEST_F(OgmTrackTest, AudioIsSkippedWhileTheExtractorSeeksAndVideoIsNot) {
    startTrack(OGA_AUDIO_PCM);
    EXPECT_EQ(append({0, 0, 0, 1}, kNewPacket, kSeeking), AMEDIA_OK);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("********** Track Type[5] skip appending data because "
                                    "seeking*************\n")}));
    // This is checked first.
    EXPECT_EQ(mTrack->appendData(nullptr, kNewPacket, kSeeking), AMEDIA_OK);
}

TEST_F(OgmTrackTest, VideoIsQueuedWhileTheExtractorSeeks) {
    startTrack(OGV_VIDEO_H264);
    EXPECT_EQ(append({0, 1}, kNewPacket, kSeeking), AMEDIA_OK);
    EXPECT_EQ(mEvents.linesBeginning("packet info:").size(), 1U);
}

TEST_F(OgmTrackTest, ReframedAudioWithASyncWordIsTaken) {
    startTrack(OGA_AUDIO_AC3);
    EXPECT_EQ(append({0, 0, 0, 0x0B, 0x77}, kNewPacket), AMEDIA_OK);
    EXPECT_EQ(append({1, 2, 3}, !kNewPacket), AMEDIA_OK);
}

TEST_F(OgmTrackTest, APacketWithoutATimeIsDroppedWhichIsNoFailure) {
    for (const uint32_t type : {OGV_VIDEO_H264, OGA_AUDIO_PCM, OGA_AUDIO_AC3}) {
        OgmTrack& track = startTrack(type, 400000, 8000);
        track.updateGranulePosition(25, 1, true);
        track.updateGranulePosition(3, 1, true);
        EXPECT_EQ(append({0, 0, 0, 0x0B, 0x77}, kNewPacket), AMEDIA_OK) << type;
        EXPECT_EQ(mEvents.linesBeginning("packet info:").size(), 0U) << type;
        mTable->free(mTable->data);
        ::free(mTable);
        mTable = nullptr;
    }
}

TEST_F(OgmTrackTest, ReframedAudioReportsAPacketTooShortAndOneWithoutSync) {
    startTrack(OGA_AUDIO_AC3);
    EXPECT_EQ(append({0, 0, 0}, kNewPacket), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(append({0, 0, 0, 0}, kNewPacket), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(append({}, !kNewPacket), AMEDIA_ERROR_MALFORMED);
}

TEST_F(OgmTrackTest, AnAc3FrameOfNoBytesIsCutOutOfAPacketForever) {
    // frmsizecod 37, for which the cutter's table has no size.
    const Bytes endless{0x00, 0x00, 0x00, 0x0B, 0x77, 0x12, 0x34, 37, 0x40, 1, 2, 3, 4};
    Bytes measured = endless;
    measured[7] = 36;
    startTrack(OGA_AUDIO_AC3);
    EXPECT_EQ(runInChild([&] { append(endless, kNewPacket); }, kEndlessCall), outOfTime());
    const Bytes tooShort = head(endless, endless.size() - 1);
    EXPECT_EQ(runInChild([&] { append(tooShort, kNewPacket); }, kEndlessCall), returned());
    EXPECT_EQ(runInChild([&] { append(measured, kNewPacket); }, kEndlessCall), returned());
}

TEST_F(OgmTrackTest, ReframedAudioLogsWhyItRefusesAPacket) {
    startTrack(OGA_AUDIO_AC3);
    append({0, 0, 0}, kNewPacket);
    EXPECT_EQ(mEvents.lines().back(), errorLine("Invalid append buffer size:3"));
    append({0, 0, 0, 0}, kNewPacket);
    EXPECT_EQ(mEvents.lines().back(), errorLine("appendAudioData FAIL!"));
}

/** A stream's timing, and the time of its track at granule position 8000. */
struct Timing {
    uint32_t type;
    int64_t timeUnit;
    int64_t sampleRate;
    int64_t timeUs;
};

class TrackClockTest : public OgmTrackTest, public ::testing::WithParamInterface<Timing> {};

TEST_P(TrackClockTest, RunsByTheFieldsOfItsStreamType) {
    OgmTrack& track = startTrack(GetParam().type, GetParam().timeUnit, GetParam().sampleRate);
    track.updateGranulePosition(8000, 1, true);
    track.updateGranulePosition(9000, 1, true);
    EXPECT_EQ(track.currentTimeUs(), GetParam().timeUs);
}

// Video uses the low 32 bits of the time unit as a signed number, audio only the sample rate.
INSTANTIATE_TEST_SUITE_P(
        Streams, TrackClockTest,
        ::testing::Values(Timing{OGV_VIDEO_H264, 400000, 25, 320000000},
                          Timing{OGV_VIDEO_H264, (int64_t{1} << 32) + 400000, 25, 320000000},
                          Timing{OGV_VIDEO_H264, int64_t{1} << 32, 0, 0},
                          Timing{OGV_VIDEO_H264, 0xFFFFFFF6, 25, 1844674407370947161},
                          Timing{OGA_AUDIO_PCM, 10000000, 8000, 1000000},
                          Timing{OGA_AUDIO_PCM, 10000000, -1, 0},
                          Timing{OGA_AUDIO_PCM, 10000000, 0, 0}));

TEST_F(OgmTrackTest, WithoutATargetTimeNoEntryIsSet) {
    MediaBufferHelper* buffer = trackWith(OGV_VIDEO_H264, {0x08, 1, 2}).dequeueFrame(kNoTarget);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(bytesOf(buffer), (Bytes{1, 2}));
    EXPECT_EQ(int64Of(buffer->meta_data(), AMEDIAFORMAT_KEY_TARGET_TIME), std::nullopt);
    EXPECT_EQ(int64Of(buffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US), 0);
    EXPECT_EQ(int32Of(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME), 1);
    buffer->release();
}

TEST_F(OgmTrackTest, AGivenTargetTimeIsSet) {
    MediaBufferHelper* buffer = trackWith(OGV_VIDEO_H264, {0, 1, 2}).dequeueFrame(123456);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(int64Of(buffer->meta_data(), AMEDIAFORMAT_KEY_TARGET_TIME), 123456);
    buffer->release();
}

TEST_F(OgmTrackTest, AudioOfTypeTwoLosesItsHeaderByTheRuleOfItsFirstByte) {
    MediaBufferHelper* buffer = trackWith(2, {0x88, 1, 2, 3, 4}).dequeueFrame(0);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(bytesOf(buffer), (Bytes{3, 4}));
    EXPECT_EQ(int32Of(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME), std::nullopt);
    buffer->release();
}

class UnnamedVideoTypeTest : public OgmTrackTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(UnnamedVideoTypeTest, LosesItsHeaderByteAndCarriesASyncFlag) {
    MediaBufferHelper* buffer = trackWith(GetParam(), {0x08, 1, 2}).dequeueFrame(0);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(bytesOf(buffer), (Bytes{1, 2}));
    EXPECT_EQ(int32Of(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME), 1);
    buffer->release();
}

INSTANTIATE_TEST_SUITE_P(Types, UnnamedVideoTypeTest, ::testing::Values(16U, 21U));

class UnknownTypeTest : public OgmTrackTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(UnknownTypeTest, ReturnsNothingAndKeepsThePacket) {
    OgmTrack& track = trackWith(GetParam(), {0x08, 1, 2});
    const LogLine line = errorLine(
            formatted("dequeueFrame:Unknow track type:%d\n", static_cast<int>(GetParam())));
    EXPECT_EQ(track.dequeueFrame(0), nullptr);
    EXPECT_EQ(track.dequeueFrame(0), nullptr);
    EXPECT_EQ(mEvents.lines(), (std::vector{line, line}));
}

INSTANTIATE_TEST_SUITE_P(Types, UnknownTypeTest,
                         ::testing::Values(0U, 10U, 15U, 17U, 20U, 27U, 30U));

}  // namespace
}  // namespace android::ogm::test::ogm_track_test
