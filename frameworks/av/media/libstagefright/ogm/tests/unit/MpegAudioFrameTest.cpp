// SPDX-License-Identifier: Apache-2.0
#include "codec/MpegAudioFrame.h"

#include "ElementaryStreams.h"
#include "LogTest.h"
#include "Views.h"

namespace android::ogm::test::mpeg_audio_frame_test {
namespace {

using Result = ogm::MpegAudioFrame::Result;

constexpr uint32_t kReference = 0xFFFB9040;
constexpr size_t kFrameSize = 417;

Bytes frame() {
    return MpegAudioFrame{}.bytes();
}

ogm::MpegAudioFrame findFrame(const Bytes& data, uint64_t offset = 0) {
    return findMpegAudioFrame(viewOf(data), offset, kReference);
}

class MpegAudioFrameTest : public LogTest {
  protected:
    /** The offset and header that a lock finds; nothing if it fails. */
    static std::optional<std::pair<uint64_t, uint32_t>> lock(const Bytes& data) {
        uint64_t offset = 0;
        uint32_t reference = 0;
        if (!lockMpegAudio(viewOf(data), &offset, &reference)) {
            return std::nullopt;
        }
        return std::pair(offset, reference);
    }
};

TEST_F(MpegAudioFrameTest, AHeaderIsLockedOnWhereTheNextOneConfirmsIt) {
    EXPECT_EQ(lock(joined({frame(), frame()})), std::pair(uint64_t{kFrameSize}, kReference));
}

TEST_F(MpegAudioFrameTest, AFailedLockOfUpTo131072BytesIsAWarningAndOfMoreAnError) {
    EXPECT_EQ(lock(pattern(131072, 1)), std::nullopt);
    EXPECT_EQ(mEvents.lines().back(), warningLine("Not get mMP3Header, size:131072"));
    EXPECT_FALSE(isTooLongWithoutLock(131072));
    EXPECT_EQ(lock(pattern(131073, 1)), std::nullopt);
    EXPECT_EQ(mEvents.lines().back(),
              errorLine("findMP3Header fail size>131072, skip this buffer"));
    EXPECT_TRUE(isTooLongWithoutLock(131073));
}

TEST_F(MpegAudioFrameTest, AWholeFrameIsMeasured) {
    const auto found = findFrame(joined({{1, 2, 3}, frame(), {0xFF}}));
    EXPECT_EQ(found.result, Result::kWhole);
    EXPECT_EQ(found.offset, 3U);
    EXPECT_EQ(found.header, kReference);
    EXPECT_EQ(found.size, kFrameSize);
}

TEST_F(MpegAudioFrameTest, TheSearchBeginsAtTheOffset) {
    EXPECT_EQ(findFrame(joined({frame(), frame()}), 1).offset, kFrameSize);
    EXPECT_EQ(findFrame(frame(), 1).result, Result::kNoMatch);
    EXPECT_EQ(findFrame(frame(), 5000).result, Result::kNoMatch);
}

TEST_F(MpegAudioFrameTest, AFrameWhoseLastByteIsMissingIsIncomplete) {
    EXPECT_EQ(findFrame(head(frame(), kFrameSize - 1)).result, Result::kIncomplete);
    EXPECT_EQ(findFrame(head(frame(), 4)).result, Result::kIncomplete);
}

TEST_F(MpegAudioFrameTest, AHeaderThatDisagreesIsNoMatch) {
    MpegAudioFrame otherRate;
    otherRate.samplingRateIndex = 1;
    EXPECT_EQ(findFrame(otherRate.bytes()).result, Result::kNoMatch);
    EXPECT_EQ(findFrame(head(frame(), 3)).result, Result::kNoMatch);
    EXPECT_EQ(findFrame({}).result, Result::kNoMatch);
}

TEST_F(MpegAudioFrameTest, AHeaderThatAgreesButDoesNotDecodeIsBad) {
    for (const uint8_t bitrate : {0x00, 0xF0}) {
        const auto found = findFrame(joined({{0xFF, 0xFB, bitrate, 0x40}, pattern(500, 1)}));
        EXPECT_EQ(found.result, Result::kBadHeader);
        EXPECT_EQ(found.size, 0U);
    }
}

}  // namespace
}  // namespace android::ogm::test::mpeg_audio_frame_test
