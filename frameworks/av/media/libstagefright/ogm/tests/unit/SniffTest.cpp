// SPDX-License-Identifier: Apache-2.0
#include "page/Sniff.h"

#include <gtest/gtest.h>

#include "EventLog.h"
#include "OgmFile.h"

namespace android::ogm::test {
namespace {

class SniffTest : public ::testing::Test {
  protected:
    bool accepts(const Bytes& bytes) {
        return sniffOgm(bytes.data(), static_cast<uint32_t>(bytes.size()), &mVorbis);
    }

    EventLog mEvents;
    LogCapture mCapture{mEvents};
    uint8_t mVorbis = 0;
};

TEST_F(SniffTest, FourBytesAreRefusedWithoutAMessage) {
    EXPECT_FALSE(accepts(bytesOf("OggS")));
    EXPECT_FALSE(accepts(bytesOf("xxxx")));
    EXPECT_TRUE(mEvents.events().empty());
}

TEST_F(SniffTest, AVorbisHeaderSetsTheFlagAndNothingElseDoes) {
    OgmFile video;
    video.addHeader(1, VideoHeader());
    EXPECT_TRUE(accepts(video.bytes()));
    EXPECT_EQ(mVorbis, 0);
    OgmFile vorbis;
    vorbis.addHeader(1, vorbisIdentificationHeader());
    EXPECT_FALSE(accepts(vorbis.bytes()));
    EXPECT_EQ(mVorbis, 1);
}

TEST_F(SniffTest, ABufferThatEndsWithinTheIdentificationMatchesNothing) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    EXPECT_FALSE(accepts(head(file.bytes(), 28 + 1 + 4)));
    EXPECT_TRUE(accepts(head(file.bytes(), 28 + 1 + 5)));
}

TEST_F(SniffTest, EveryLengthOfAFileIsBounded) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    file.addHeader(3, VideoHeader());
    for (size_t length = 5; length <= file.size(); ++length) {
        // A copy of its own, so that a sanitizer sees a read past it.
        const Bytes bytes = head(file.bytes(), length);
        EXPECT_EQ(accepts(bytes), length >= file.size() - 53 + 6) << length;
    }
}

}  // namespace
}  // namespace android::ogm::test
