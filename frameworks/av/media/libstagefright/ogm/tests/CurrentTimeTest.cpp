// SPDX-License-Identifier: Apache-2.0
#include <cinttypes>

#include "Microseconds.h"
#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test::current_time_test {
namespace {

/**
 * The time that the tracks have reached during the scan of a seek. It is in the log line after each
 * step. The files are too short for a duration, so there is one step, from the start of the file.
 */
class CurrentTimeTest : public PluginTest {
  protected:
    /** Starts all tracks, seeks the first, and returns the time that its scan reached. */
    int64_t timeReached(const OgmFile& file, int64_t seekUs) {
        OpenedFile opened = openQuietly(file);
        std::vector<std::unique_ptr<Track>> tracks;
        for (size_t i = 0; i < opened->countTracks(); ++i) {
            tracks.push_back(opened->startedTrack(i));
        }
        return timeReached(*tracks.front(), seekUs);
    }

    int64_t timeReached(Track& track, int64_t seekUs) {
        mEvents.clear();
        mLastRead = track.readAt(seekUs);
        const auto lines = mEvents.linesBeginning("mFirstDataPageOffset = ");
        EXPECT_EQ(lines.size(), 1U);
        int64_t timeUs = -1;
        const std::string& text = lines.front().text;
        EXPECT_EQ(sscanf(text.c_str() + text.find("seekTimeUs="), "seekTimeUs=%" SCNd64, &timeUs),
                  1);
        return timeUs;
    }

    static void addVideo(OgmFile& file, uint32_t serialNo, const std::vector<uint64_t>& granules) {
        for (const uint64_t granule : granules) {
            file.addData(serialNo, granule, dataPacket(kSyncPacket, {1, 2, 3}));
        }
    }

    static void addAudio(OgmFile& file, uint32_t serialNo, const std::vector<uint64_t>& granules) {
        for (const uint64_t granule : granules) {
            file.addData(serialNo, granule, audioPacket({1, 2, 3}));
        }
    }

    ReadResult mLastRead;
};

TEST_F(CurrentTimeTest, ThePacketsOfAPageDoNotMoveTheTime) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    for (uint64_t granule = 500000; granule <= 5000000; granule += 500000) {
        file.add(OggPage(1)
                         .granule(granule)
                         .packet(audioPacket({1}))
                         .packet(audioPacket({2}))
                         .packet(audioPacket({3})));
    }
    EXPECT_EQ(timeReached(file, 4200000), 1500000);
}

TEST_F(CurrentTimeTest, TheFurthestTrackCounts) {
    OgmFile file;
    file.addHeader(1, microsecondVideo());
    file.addHeader(2, microsecondAudio());
    for (uint64_t i = 1; i < 100; ++i) {
        addVideo(file, 1, {i * 10000});
        addAudio(file, 2, {i * 100000});
    }
    // The audio page that begins at 2.0 s.
    EXPECT_EQ(timeReached(file, 5 * kSecond), 2 * kSecond);
    // Video has reached a tenth of it and continues there.
    EXPECT_EQ(mLastRead.timeUs, 210000);
}

TEST_F(CurrentTimeTest, ATrackWhoseFirstPagesComeLateKeepsTheTimeAtZero) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    file.addHeader(2, microsecondVideo());
    for (uint64_t i = 1; i <= 60; ++i) {
        addAudio(file, 1, {i * 100000});
    }
    addVideo(file, 2, {1000000, 1500000});
    for (uint64_t i = 61; i <= 70; ++i) {
        addAudio(file, 1, {i * 100000});
    }
    addVideo(file, 2, {7000000});
    // The scan for 1 s continues to the second video page, where the audio has reached 5.9 s.
    EXPECT_EQ(timeReached(file, 4 * kSecond), 5900000);
}

TEST_F(CurrentTimeTest, ATrackAtTimeZeroKeepsTheTimeAtZero) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    file.addHeader(2, microsecondVideo());
    for (uint64_t i = 1; i <= 60; ++i) {
        addAudio(file, 1, {i * 100000});
        addVideo(file, 2, {0});
    }
    EXPECT_EQ(timeReached(file, 4 * kSecond), 0);
    EXPECT_EQ(mLastRead.status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(CurrentTimeTest, ATrackWithoutPagesSendsEveryScanToTheEndOfTheFile) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    file.addHeader(2, microsecondVideo());
    for (uint64_t i = 1; i <= 60; ++i) {
        addAudio(file, 1, {i * 100000});
    }
    EXPECT_EQ(timeReached(file, 4 * kSecond), 0);
    EXPECT_EQ(mLastRead.status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(CurrentTimeTest, ATrackThatIsNotRegisteredHasNoPartInTheTime) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    file.addHeader(2, microsecondVideo());
    for (uint64_t i = 1; i <= 60; ++i) {
        addAudio(file, 1, {i * 100000});
    }
    OpenedFile opened = openQuietly(file);
    auto audio = opened->startedTrack(0);
    EXPECT_EQ(timeReached(*audio, 4 * kSecond), kSecond);

    auto video = opened->startedTrack(1);
    EXPECT_EQ(timeReached(*audio, 4 * kSecond), 0);
    video->stop();
    EXPECT_EQ(timeReached(*audio, 4 * kSecond), kSecond);
}

TEST_F(CurrentTimeTest, TheTimeIsTakenAfterEachPageNotAfterEachPacket) {
    // 100 packets on the page that begins at 1 s: the scan skips all of them at once.
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    addAudio(file, 1, {500000, 1000000});
    OggPage page(1);
    page.granule(1500000);
    for (uint8_t i = 0; i < 100; ++i) {
        page.packet(audioPacket({i, i}));
    }
    file.add(page);
    for (uint64_t granule = 2000000; granule < 10000000; granule += 500000) {
        addAudio(file, 1, {granule});
    }
    EXPECT_EQ(timeReached(file, 4 * kSecond), kSecond);
    EXPECT_EQ(mLastRead.timeUs, 1500000);
}

}  // namespace
}  // namespace android::ogm::test::current_time_test
