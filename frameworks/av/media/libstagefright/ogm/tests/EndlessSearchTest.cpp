// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "PluginTest.h"
#include "SilentLog.h"

namespace android::ogm::test::endless_search_test {
namespace {

constexpr std::chrono::milliseconds kLimit(200);
constexpr int64_t kSeekUs = 4000000;

/** A cursor at offset 0 is treated as not set, so it goes to the first page again. */
class EndlessSearchTest : public PluginTest {
  protected:
    /** A file whose first stream is Vorbis, for which no track is made. */
    static OgmFile vorbisAndVideo() {
        OgmFile file;
        file.addHeader(1, vorbisIdentificationHeader());
        file.addHeader(2, VideoHeader());
        return file;
    }

    void readFirstTrack(const OgmFile& file) {
        const SilentLog silent;
        OpenedFile opened = open(std::make_unique<MemorySource>(file.bytes()));
        opened->startedTrack(0)->read();
    }

    /** Seeks after the source has stopped returning anything. */
    void seekAfterTheLastRead(status_t sizeStatus) {
        const SilentLog silent;
        auto source = std::make_unique<MemorySource>(oneVideoOneAudioFile().bytes());
        source->setSizeStatus(sizeStatus);
        OpenedFile opened = open(std::move(source));
        const auto track = opened->startedTrack(1);
        // The current page is now one of the other stream, which has no track.
        track->read();
        opened.source->setFault(faultyRead(0, 0, Lasting::kFromThenOn));
        track->readAt(kSeekUs);
    }
};

TEST_F(EndlessSearchTest, WithoutADataPageThePacketsOfALaterStreamAreSearchedForever) {
    OgmFile withData = vorbisAndVideo();
    withData.addData(2, 1, dataPacket(kSyncPacket, filled(10, 1)));
    EXPECT_EQ(runInChild([&] { readFirstTrack(vorbisAndVideo()); }, kLimit), outOfTime());
    EXPECT_EQ(runInChild([&] { readFirstTrack(withData); }), returned());
}

TEST_F(EndlessSearchTest, ASeekInAFileOfUnknownSizeThatReturnsNothingMoreDoesNotEnd) {
    EXPECT_EQ(runInChild([&] { seekAfterTheLastRead(-1010); }, kLimit), outOfTime());
    EXPECT_EQ(runInChild([&] { seekAfterTheLastRead(OK); }), returned());
}

}  // namespace
}  // namespace android::ogm::test::endless_search_test
