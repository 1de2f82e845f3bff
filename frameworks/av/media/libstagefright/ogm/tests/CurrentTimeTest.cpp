// SPDX-License-Identifier: Apache-2.0
#include <cinttypes>

#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test {
namespace {

constexpr int64_t kSecond = 1000000;

/**
 * How far the tracks have come during the scan of a seek, seen in the line that ends each of its
 * steps. The files are too short for a duration, so there is one step from the start of the file.
 */
class CurrentTimeTest : public PluginTest {
  protected:
    /** Starts all tracks, seeks the first, and gives the time that its scan reached. */
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

    static OgmFile videoFile(uint64_t timeUnit, const std::vector<uint64_t>& granules) {
        VideoHeader header;
        header.timeUnit = timeUnit;
        OgmFile file;
        file.addHeader(1, header);
        addVideo(file, 1, granules);
        return file;
    }

    static OgmFile audioFile(uint64_t sampleRate, const std::vector<uint64_t>& granules) {
        AudioHeader header;
        header.samplesPerUnit = sampleRate;
        OgmFile file;
        file.addHeader(1, header);
        addAudio(file, 1, granules);
        return file;
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

TEST_F(CurrentTimeTest, AVideoTimeIsThePreviousGranuleInTimeUnitsTruncated) {
    std::vector<uint64_t> granules;
    for (uint64_t i = 1; i < 200; ++i) {
        granules.push_back(i);
    }
    // 90 and 91 frames of 33,366.7 us.
    EXPECT_EQ(timeReached(videoFile(333667, granules), 3003003 + 3 * kSecond), 3003003);
    EXPECT_EQ(timeReached(videoFile(333667, granules), 3003004 + 3 * kSecond), 3036369);
}

TEST_F(CurrentTimeTest, AnAudioTimeIsThePreviousGranuleInSamplesTruncated) {
    EXPECT_EQ(timeReached(audioFile(44100, {1000, 2000, 50000, 60000, 70000, 80000}), 4 * kSecond),
              1133786);
    EXPECT_EQ(timeReached(audioFile(44100, {1000, 2000, 44100, 60000, 70000, 80000}), 4 * kSecond),
              1000000);
}

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
    // Video has come to a tenth of it and reads on there.
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
    // The scan for 1 s goes on to the second video page, when the audio has come to 5.9 s.
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

TEST_F(CurrentTimeTest, AVideoTrackWithoutTimeUnitHasNoTime) {
    // Nor has it a frame rate then.
    EXPECT_EQ(timeReached(videoFile(0, {10, 20, 30, 40, 50}), 4 * kSecond), 0);
}

TEST_F(CurrentTimeTest, AnAudioTrackWithoutSampleRateHasNoTime) {
    EXPECT_EQ(timeReached(audioFile(0, {100000, 200000, 300000}), 4 * kSecond), 0);
}

TEST_F(CurrentTimeTest, AVideoTrackWhoseTimeUnitLosesItsLowBitsHasNoTime) {
    // The track keeps the low 32 bits, which are 0; the frame rate is 0 then, too.
    EXPECT_EQ(timeReached(videoFile(uint64_t{1} << 32, {10, 20, 30, 40}), 4 * kSecond), 0);
}

TEST_F(CurrentTimeTest, ATimeUnitWithBit31SetIsSignExtended) {
    // (2 x -10) / 10 in unsigned 64-bit arithmetic, on the page that follows granule position 2.
    EXPECT_EQ(timeReached(videoFile(0xFFFFFFF6, {2, 4, 6, 8}), 4 * kSecond), 1844674407370955159);
}

TEST_F(CurrentTimeTest, ANegativeSampleRateIsSignExtended) {
    // A divisor close to 2^64 leaves nothing of any granule position.
    EXPECT_EQ(timeReached(audioFile(0xFFFFFFFF, {8000000, 16000000, 24000000}), 4 * kSecond), 0);
}

TEST_F(CurrentTimeTest, TwoPagesWithoutGranuleMakeTheLargestVideoTime) {
    // The first of them ends the page before, the second one begins at "no granule".
    EXPECT_EQ(timeReached(videoFile(400000, {10, kNoGranule, kNoGranule, 20, 30}), 4 * kSecond),
              1844674407370915161);
}

TEST_F(CurrentTimeTest, OnePageWithoutGranuleRestartsTheTimeFromZero) {
    // The page after it is no longer valid; the next valid one begins at granule position 50.
    EXPECT_EQ(timeReached(videoFile(400000, {10, kNoGranule, 50, 60, 70}), 4 * kSecond), 2000000);
}

TEST_F(CurrentTimeTest, ATimeOf2To63OrMoreIsNegativeAndNeverTheLargest) {
    // At one sample a second, times are granule positions x 1,000,000 modulo 2^64.
    const uint64_t granule = (uint64_t{1} << 63) / 1000000 + 1;
    EXPECT_EQ(timeReached(audioFile(1, {granule, granule + 1, granule + 2, granule + 3}),
                          4 * kSecond),
              0);
    EXPECT_EQ(mLastRead.status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(CurrentTimeTest, AGranuleThatJumpsBackLosesTheTimeUntilItRisesAgain) {
    EXPECT_EQ(timeReached(audioFile(8000, {8000, 16000, 400, 24000, 32000, 40000}), 6 * kSecond),
              3 * kSecond);
}

TEST_F(CurrentTimeTest, TheTimeIsTakenAfterEachPageNotAfterEachPacket) {
    // 100 packets on the page that begins at 1 s: the scan passes over all of them at once.
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
}  // namespace android::ogm::test
