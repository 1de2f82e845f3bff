// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "PluginTest.h"

namespace android::ogm::test::pcm_test {
namespace {

constexpr uint32_t kSerialNo = 1;
// Announces a header of four bytes, after which a packet may be empty.
constexpr uint8_t kFourByteHeader = 0x40;
const LogLine kEightBits = infoLine("OGA_AUDIO_PCM,mBitsPerSample == 8");

/** A group with a single buffer. */
class GroupOfOne {
  public:
    GroupOfOne() : mTable(*mGroup.wrap()) {
        mTable.handle = this;
        mTable.init = [](void* self, size_t count, size_t size, size_t limit) {
            CMediaBufferGroup* const group = static_cast<GroupOfOne*>(self)->mGroup.wrap();
            return group->init(group->handle, count, size, limit);
        };
        mTable.acquire_buffer = [](void* self, CMediaBuffer** buffer, bool nonBlocking,
                                   size_t size) {
            return static_cast<GroupOfOne*>(self)->acquire(buffer, nonBlocking, size);
        };
    }

    CMediaBufferGroup* table() { return &mTable; }
    /** Whether the buffer has been returned. */
    bool isWhole() { return mGroup.has_buffers(); }

  private:
    media_status_t acquire(CMediaBuffer** buffer, bool nonBlocking, size_t size) {
        CMediaBufferGroup* const group = mGroup.wrap();
        return mGiven++ == 0 ? group->acquire_buffer(group->handle, buffer, nonBlocking, size)
                             : AMEDIA_ERROR_UNKNOWN;
    }

    MediaBufferGroup mGroup;
    CMediaBufferGroup mTable;
    int mGiven = 0;
};

class PcmTest : public PluginTest {
  protected:
    /** A file whose packets of a second each hold the payload. */
    static OgmFile file(uint16_t bits, const Bytes& payload, const char* tag = "0001") {
        AudioHeader header;
        header.subtype = tag;
        header.bitsPerSample = bits;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        file.addPages(kSerialNo, std::vector<Bytes>(20, audioPacket(payload, kFourByteHeader)),
                      8000);
        return file;
    }

    /** The results of two reads of a track with `bits` bits per sample and this payload. */
    std::vector<ReadResult> read(uint16_t bits, const Bytes& payload, const char* tag = "0001") {
        OpenedFile opened = open(file(bits, payload, tag));
        const auto track = opened->startedTrack(0);
        mEvents.clear();
        std::vector<ReadResult> results = track->readAll(2);
        mLines = mEvents.lines();
        return results;
    }

    Bytes firstBytes(uint16_t bits, const Bytes& payload, const char* tag = "0001") {
        return read(bits, payload, tag).at(0).bytes;
    }

    /** The log lines of the two reads. */
    std::vector<LogLine> mLines;
};

TEST_F(PcmTest, SixteenBitsAreReturnedAsTheyAre) {
    EXPECT_EQ(firstBytes(16, {1, 2, 3, 4}), (Bytes{1, 2, 3, 4}));
}

TEST_F(PcmTest, EightBitsBecomeSignedSixteenBits) {
    EXPECT_EQ(firstBytes(8, {0x80, 0x00, 0xFF, 0x7F}),
              (Bytes{0x00, 0x00, 0x00, 0x80, 0x00, 0x7F, 0x00, 0xFF}));
}

TEST_F(PcmTest, AHundredBytesOfEightBitsBecomeTwoHundredInASeparateBuffer) {
    const auto results = read(8, pattern(100, 1));
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].bytes.size(), 200U);
    // The first buffer of 256 bytes holds the packet, so another of 200 x 3 / 2 is made.
    EXPECT_EQ(results[0].capacity, 300U);
    EXPECT_EQ(results[1].capacity, 300U);
    EXPECT_EQ(mEvents.count(kEightBits), 2U);
}

TEST_F(PcmTest, WithoutABufferToConvertIntoTheReadFailsAndReleasesTheFirstOne) {
    GroupOfOne group;
    OpenedFile opened = open(file(8, pattern(100, 1)));
    const auto track = opened->track(0);
    ASSERT_EQ(track->start(group.table()), AMEDIA_OK);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_UNKNOWN);
    EXPECT_TRUE(group.isWhole());
}

TEST_F(PcmTest, AConvertedBufferOfEightBitsHasOnlyItsTime) {
    const auto results = read(8, pattern(100, 1));
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[1].timeUs, 1000000);
    EXPECT_EQ(results[1].targetTimeUs, std::nullopt);
    EXPECT_EQ(results[1].isSyncFrame, std::nullopt);
    EXPECT_EQ(mLines.back(),
              infoLine("after read mime:audio/raw IsIFrame:0, timeUs:1000000, size:200"));
}

TEST_F(PcmTest, TheConversionIsLoggedBeforeTheBufferIsReturned) {
    read(8, {1});
    ASSERT_GE(mLines.size(), 2U);
    EXPECT_EQ(mLines[mLines.size() - 2], kEightBits);
}

TEST_F(PcmTest, TwentyFourBitsLoseTheirLowestByte) {
    EXPECT_EQ(firstBytes(24, {0x01, 0x02, 0x03, 0x04, 0x05, 0x06}),
              (Bytes{0x02, 0x03, 0x05, 0x06}));
}

TEST_F(PcmTest, OtherCodecsAreNotConverted) {
    EXPECT_EQ(firstBytes(8, {0x80, 0x00, 0xFF}, "0002"), (Bytes{0x80, 0x00, 0xFF}));
    EXPECT_EQ(firstBytes(24, {1, 2, 3}, "00FF"), (Bytes{1, 2, 3}));
    EXPECT_FALSE(mEvents.holds(kEightBits));
}

TEST_F(PcmTest, TheBitsPerSampleOfTheHeaderAcceptedLastApplyToAllTracks) {
    // A PCM track of 16 bits becomes one of 8 bits if a later header, video or audio, has 8 bits.
    AudioHeader pcm;
    pcm.bitsPerSample = 16;
    VideoHeader video;
    video.bitsPerSample = 8;
    VideoHeader refused;
    refused.subtype = "XVID";
    refused.bitsPerSample = 24;
    OgmFile file;
    file.addHeader(1, pcm);
    file.addHeader(2, video);
    file.addHeader(3, refused);
    for (uint64_t i = 1; i <= 3; ++i) {
        file.addData(1, i * 8, audioPacket({0x80, 0x00}));
    }
    OpenedFile opened = open(file);
    const auto results = opened->startedTrack(0)->drain();
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].bytes, (Bytes{0x00, 0x00, 0x00, 0x80}));
}

}  // namespace
}  // namespace android::ogm::test::pcm_test
