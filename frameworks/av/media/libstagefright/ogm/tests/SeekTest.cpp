// SPDX-License-Identifier: Apache-2.0
#include "ElementaryStreams.h"
#include "Microseconds.h"
#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test::seek_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kMime[] = "audio/raw";

/** What a read with a seek does before it reads a packet, for a single PCM or video track. */
class SeekTest : public PluginTest {
  protected:
    static std::vector<Event> beginOfSeek(int64_t timeUs) {
        return {infoLine("getFormat: Track type[5]"),
                infoLine(formatted("begin read mime:%s", kMime)),
                infoLine(formatted("begin seek to %lld us mime:%s", static_cast<long long>(timeUs),
                                   kMime))};
    }

    static LogLine endOfSeek(int64_t timeUs) {
        return infoLine(
                formatted("after seek to %lld us mime:%s", static_cast<long long>(timeUs), kMime));
    }

    static LogLine scanLine(int64_t size, int64_t durationUs, int64_t offset, int64_t reachedUs,
                            int64_t targetUs) {
        return infoLine(
                formatted("mFirstDataPageOffset = %lld,mDataSourceSize = %lld,mDuration = "
                          "%lld,searchOffset=%lld,seekTimeUs=%lld,seekTargetUs=%lld",
                          static_cast<long long>(kHeaderPageSize), static_cast<long long>(size),
                          static_cast<long long>(durationUs), static_cast<long long>(offset),
                          static_cast<long long>(reachedUs), static_cast<long long>(targetUs)));
    }

    /** The search that finds a page at its start, its header, and its lacing table of 4 values. */
    static std::vector<Event> pageFound(size_t index) {
        const int64_t offset = pageOffset(index);
        return {ReadCall{offset, 4, 4}, ReadCall{offset, 27, 27}, ReadCall{offset + 27, 4, 4}};
    }

    /** All events of a new track's seek in a short file, before it reads a packet. */
    std::vector<Event> eventsOfSeek(const OgmFile& file, int64_t timeUs) {
        OpenedFile opened = openQuietly(file);
        auto track = opened->startedTrack(0);
        mEvents.clear();
        track->readAt(timeUs);
        std::vector<Event> events = mEvents.events();
        const auto end = std::find(events.begin(), events.end(), Event(endOfSeek(timeUs)));
        EXPECT_NE(end, events.end());
        events.erase(end == events.end() ? end : end + 1, events.end());
        return events;
    }
};

TEST_F(SeekTest, ASeekToZeroGoesToTheFirstDataPageWithoutAScan) {
    EXPECT_EQ(eventsOfSeek(pacedAudioFile(100), 0),
              joinedEvents({beginOfSeek(0),
                            {debugLine("Start seekToTime"),
                             infoLine("OgmTrack:mSerialNo[1] signalDiscontinuity!")},
                            pageFound(0),
                            {debugLine("End seekToTime"), endOfSeek(0)}}));
}

TEST_F(SeekTest, ASeekToThreeSecondsScansTheFirstPageAndUsesItUp) {
    const OgmFile file = pacedAudioFile(1000);
    const int64_t size = static_cast<int64_t>(file.size());
    const std::vector<Event> expected = joinedEvents(
            {beginOfSeek(3 * kSecond),
             {debugLine("Start seekToTime"), infoLine("OgmTrack:mSerialNo[1] signalDiscontinuity!"),
              infoLine("seekToTime, 2449, searchOffset=81"),
              // A cursor at offset 0 is treated as not set: it goes to the first data page.
              ReadCall{0, 4, 4}, ReadCall{0, 27, 27}, ReadCall{27, 1, 1}},
             pageFound(0),
             pageFound(1),  // looks for the next granule position
             {scanLine(size, 40 * kSecond, 0, 0, 0),
              infoLine("has search seek point from file beginning, Exit!"),
              debugLine("End seekToTime"), endOfSeek(3 * kSecond)}});
    EXPECT_EQ(eventsOfSeek(file, 3 * kSecond), expected);
}

TEST_F(SeekTest, TheReadOfASeekBelowThreeSecondsGivesTheFirstPacket) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    track->readAt(20 * kSecond);
    const ReadResult result = track->readAt(2999999);
    EXPECT_EQ(result.status, AMEDIA_OK);
    EXPECT_EQ(result.timeUs, 0);
    EXPECT_EQ(result.bytes, audioPayload(0));
}

TEST_F(SeekTest, TheReadOfASeekToThreeSecondsGivesTheSecondPacket) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    const ReadResult result = track->readAt(3 * kSecond);
    EXPECT_EQ(result.timeUs, kPacedPageUs);
    EXPECT_EQ(result.bytes, audioPayload(1));
}

TEST_F(SeekTest, ASeekLandsOnThePageAfterTheFirstOneThatReachesThreeSecondsBeforeTheTarget) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    for (const auto& [timeUs, page] : {std::pair<int64_t, size_t>{20 * kSecond, 426},
                                       {20 * kSecond + 1, 427},
                                       {20 * kSecond + 40000, 427},
                                       {30 * kSecond, 676},
                                       {5 * kSecond, 51}}) {
        const ReadResult result = track->readAt(timeUs);
        EXPECT_EQ(result.timeUs, static_cast<int64_t>(page) * kPacedPageUs) << timeUs;
        EXPECT_EQ(result.bytes, audioPayload(page)) << timeUs;
        EXPECT_EQ(track->read().bytes, audioPayload(page + 1)) << timeUs;
    }
}

TEST_F(SeekTest, TheSeekModeIsIgnored) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    for (const uint32_t mode : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        EXPECT_EQ(track->read(SEEK | mode, 20 * kSecond).bytes, audioPayload(426)) << mode;
    }
}

TEST_F(SeekTest, WithoutTheSeekFlagATimeIsIgnored) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->read(0, 20 * kSecond).bytes, audioPayload(0));
    EXPECT_EQ(track->read(SEEK_CLOSEST | NONBLOCKING, 20 * kSecond).bytes, audioPayload(1));
    EXPECT_THAT(mEvents.linesBeginning("begin seek"), IsEmpty());
}

TEST_F(SeekTest, ASeekIntoTheLast200MillisecondsGoesToTheEndOfTheFile) {
    const OgmFile file = pacedAudioFile(1000);
    const int64_t size = static_cast<int64_t>(file.size());
    for (const int64_t timeUs :
         {40 * kSecond - 199999, 40 * kSecond, 40 * kSecond + 1, 100 * kSecond, INT64_MAX}) {
        EXPECT_EQ(eventsOfSeek(file, timeUs),
                  joinedEvents({beginOfSeek(timeUs),
                                {debugLine("Start seekToTime"),
                                 infoLine("OgmTrack:mSerialNo[1] signalDiscontinuity!"),
                                 ReadCall{size, 4, 0}, errorLine("FindPage: readSize = 0"),
                                 infoLine("Seek to file end\n"), debugLine("End seekToTime"),
                                 endOfSeek(timeUs)}}));
    }
}

TEST_F(SeekTest, TheReadOfASeekToTheEndReportsTheEndOfTheStreamEachTime) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->read().status, AMEDIA_OK);
    const ReadResult result = track->readAt(40 * kSecond);
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_FALSE(result.hasBuffer);
    EXPECT_EQ(mEvents.lines().back(), errorLine("return EOS !"));
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->readAt(20 * kSecond).bytes, audioPayload(426));
}

TEST_F(SeekTest, AtTheEndOfTheFileTheNextGranuleOfTheLastPageIsSearchedAgain) {
    const OgmFile file = pacedAudioFile(1000);
    const int64_t size = static_cast<int64_t>(file.size());
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    track->read();
    track->readAt(40 * kSecond);
    mEvents.clear();
    track->read();
    // The cursor is at the end but still has the size and the segments of the old page.
    const int64_t pastEnd = size + static_cast<int64_t>(kPacedPageSize);
    const std::vector<Event> expected{
            infoLine("getFormat: Track type[5]"),
            infoLine("begin read mime:audio/raw"),
            ReadCall{pastEnd, 4, 0},
            errorLine("FindPage: readSize = 0"),
            errorLine(formatted("getNextGranulePosition: Cannot find a page start,LINE:2175 from "
                                "0x%08X\n",
                                static_cast<unsigned>(pastEnd))),
            infoLine("getNextGranulePosition fail, return -10006"),
            errorLine("return EOS !")};
    EXPECT_EQ(mEvents.events(), expected);
}

TEST_F(SeekTest, WithAnUnknownDurationThereIsNoEndZone) {
    // Shorter than the tail that is searched for the duration.
    OpenedFile opened = openQuietly(pacedAudioFile(250));
    auto track = opened->startedTrack(0);
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
    EXPECT_EQ(track->readAt(10 * kSecond).bytes, audioPayload(176));
    EXPECT_EQ(track->readAt(12 * kSecond).bytes, audioPayload(226));
}

TEST_F(SeekTest, BeyondTheLastPageOfAFileWithUnknownDurationTheStreamEnds) {
    OpenedFile opened = openQuietly(pacedAudioFile(250));
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->readAt(60 * kSecond).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->readAt(INT64_MAX).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->readAt(0).bytes, audioPayload(0));
}

TEST_F(SeekTest, ASeekDropsTheQueueAndTheOpenPacket) {
    // The queue holds ten packets and the beginning of an eleventh when the seek comes.
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    track->read();
    track->read();
    EXPECT_EQ(track->readAt(0).bytes, audioPayload(0));
    EXPECT_EQ(track->read().bytes, audioPayload(1));
}

TEST_F(SeekTest, TheTailOfAPacketThatBeganBeforeTheLandingPlaceIsForgotten) {
    OgmFile file;
    file.addHeader(1, microsecondAudio());
    const Bytes divided = audioPacket(pattern(507, 999));
    for (uint32_t i = 0; i < 40; ++i) {
        if (i == 21) {
            file.add(OggPage(1).granule(2100000).openPacket(head(divided, 255)));
            file.add(OggPage(1).granule(2200000).continued().packet(tail(divided, 255)));
        } else {
            file.addData(1, (uint64_t{i} + 1) * 100000, audioPacket(pattern(20, i)));
        }
    }
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    // The page at 2.0 s is used up; the packet begins on the next one.
    EXPECT_EQ(track->readAt(5000000).bytes, pattern(507, 999));
    // The page on which the packet begins is used up, so its tail has no packet to continue.
    const ReadResult result = track->readAt(5000001);
    EXPECT_EQ(result.bytes, pattern(20, 22));
    EXPECT_EQ(result.timeUs, 2200000);
}

TEST_F(SeekTest, TheFrameHeaderThatMpegAudioAgreedOnSurvivesASeek) {
    AudioHeader header;
    header.subtype = "0055";
    header.samplesPerUnit = 44100;
    MpegAudioFrame frame;
    OgmFile file;
    file.addHeader(1, header);
    for (uint32_t i = 0; i < 30; ++i) {
        frame.seed = i;
        file.addData(1, (uint64_t{i} + 1) * 1152, audioPacket(frame.bytes()));
    }
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    mEvents.clear();
    const Bytes firstOut = track->read().bytes;
    EXPECT_EQ(mEvents.linesBeginning("mMP3Header:").size(), 1U);
    mEvents.clear();
    // Now the first frame is recognised without a second one.
    frame.seed = 0;
    EXPECT_EQ(track->readAt(0).bytes, frame.bytes());
    EXPECT_EQ(track->read().bytes, firstOut);
    EXPECT_THAT(mEvents.linesBeginning("mMP3Header:"), IsEmpty());
}

TEST_F(SeekTest, HalfAnAudioFrameIsForgotten) {
    AudioHeader header;
    header.subtype = "2000";
    header.samplesPerUnit = 48000;
    Bytes frames;
    const auto frameOf = [](uint32_t index) {
        Ac3Frame frame;
        frame.frameSizeCode = 0;
        frame.seed = index;
        return frame.bytes();
    };
    for (uint32_t i = 0; i < 60; ++i) {
        append(frames, frameOf(i));
    }
    // A frame and a half in each packet: when ten frames are queued, half of another one waits.
    OgmFile file;
    file.addHeader(1, header);
    for (uint32_t i = 0; i < 40; ++i) {
        file.addData(1, (uint64_t{i} + 1) * 2304,
                     audioPacket(head(tail(frames, size_t{i} * 192), 192)));
    }
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->read().bytes, frameOf(0));
    EXPECT_EQ(track->readAt(0).bytes, frameOf(0));
    for (uint32_t i = 1; i < 12; ++i) {
        EXPECT_EQ(track->read().bytes, frameOf(i));
    }
}

TEST_F(SeekTest, ACursorThatIsSetAgainWithoutASeekKeepsWhatIsQueued) {
    // If the file begins with data, the cursor is treated as not set before each packet. Each time
    // it returns to the first page and the clock restarts, but queue and open packet stay.
    OgmFile file;
    file.addData(1, kPacedSamples, audioPacket({1, 2, 3}));
    file.addHeader(1, AudioHeader());
    file.addData(1, 2 * kPacedSamples, audioPacket({4, 5, 6}));
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    for (int i = 0; i < 30; ++i) {
        const ReadResult result = track->read();
        EXPECT_EQ(result.bytes, (Bytes{1, 2, 3}));
        EXPECT_EQ(result.timeUs, 0);
    }
}

/** Two or more tracks, one of which is selected. */
class SelectedTrackSeekTest : public SeekTest {
  protected:
    static constexpr uint32_t kVideoSerialNo = 7;
    static constexpr uint32_t kAudioSerialNo = 0x80000005;

    /** 20 seconds of alternating video and audio packets, with a sync frame every second. */
    static OgmFile twoTracks(uint32_t videoSerialNo = kVideoSerialNo) {
        OgmFile file;
        file.addHeader(videoSerialNo, VideoHeader());
        file.addHeader(kAudioSerialNo, AudioHeader());
        for (uint32_t i = 0; i < 500; ++i) {
            file.addData(videoSerialNo, i + 1,
                         dataPacket(i % 25 == 0 ? kSyncPacket : kPlainPacket, pattern(30, i)));
            file.addData(kAudioSerialNo, (i + 1) * kPacedSamples,
                         audioPacket(pattern(20, i + 1000)));
        }
        return file;
    }
};

TEST_F(SelectedTrackSeekTest, ASeekOfAnotherTrackMovesNothing) {
    OpenedFile opened = openQuietly(twoTracks());
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    EXPECT_EQ(audio->read().bytes, pattern(20, 1000));
    mEvents.clear();
    const ReadResult result = audio->readAt(10 * kSecond);
    EXPECT_EQ(result.bytes, pattern(20, 1001));
    EXPECT_EQ(result.timeUs, kPacedPageUs);
    EXPECT_EQ(firstEvents(4), joinedEvents({beginOfSeek(10 * kSecond), {endOfSeek(10 * kSecond)}}));
    EXPECT_FALSE(mEvents.holds(debugLine("Start seekToTime")));
    EXPECT_THAT(mEvents.linesBeginning("OgmTrack:mSerialNo"), IsEmpty());
}

TEST_F(SelectedTrackSeekTest, TheOtherTrackReadsOnFromWhereTheSelectedOneLeftTheFile) {
    OpenedFile opened = openQuietly(twoTracks());
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    EXPECT_EQ(audio->read().bytes, pattern(20, 1000));
    // The search drops audio up to the video packet that completes the queue with the sync frame
    // of 8 s; from there on audio is queued again.
    EXPECT_EQ(video->readAt(10 * kSecond).timeUs, 8 * kSecond);
    const ReadResult result = audio->readAt(8 * kSecond);
    EXPECT_EQ(result.timeUs, 8 * kSecond + 3 * kPacedPageUs);
    EXPECT_EQ(result.bytes, pattern(20, 1203));
}

TEST_F(SelectedTrackSeekTest, AllTracksAreResetInTheOrderOfTheirUnsignedSerialNumbers) {
    OgmFile file;
    for (const uint32_t serialNo : {0x80000005U, 9U, 7U}) {
        file.addHeader(serialNo, AudioHeader());
    }
    file.addPages(7, {audioPacket({1}), audioPacket({2}), audioPacket({3})});
    OpenedFile opened = openQuietly(file);
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(1);
    auto third = opened->startedTrack(2);
    mEvents.clear();
    first->readAt(0);
    EXPECT_THAT(mEvents.linesBeginning("OgmTrack:mSerialNo"),
                ElementsAre(infoLine("OgmTrack:mSerialNo[7] signalDiscontinuity!"),
                            infoLine("OgmTrack:mSerialNo[9] signalDiscontinuity!"),
                            infoLine("OgmTrack:mSerialNo[-2147483643] signalDiscontinuity!")));
}

TEST_F(SelectedTrackSeekTest, AudioPacketsReadDuringTheSearchForASyncFrameAreDropped) {
    OpenedFile opened = openQuietly(twoTracks());
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    mEvents.clear();
    video->readAt(10 * kSecond);
    const LogLine dropped =
            infoLine("********** Track Type[5] skip appending data because seeking*************\n");
    EXPECT_GT(mEvents.count(dropped), 0U);
    mEvents.clear();
    EXPECT_EQ(audio->read().status, AMEDIA_OK);
    EXPECT_EQ(mEvents.count(dropped), 0U);
}

TEST_F(SelectedTrackSeekTest, NothingIsQueuedDuringTheScan) {
    OpenedFile opened = openQuietly(twoTracks());
    auto audio = opened->startedTrack(1);
    auto video = opened->startedTrack(0);
    mEvents.clear();
    audio->readAt(10 * kSecond);
    const std::vector<Event> events = mEvents.events();
    const auto end = std::find(events.begin(), events.end(), Event(debugLine("End seekToTime")));
    ASSERT_NE(end, events.end());
    EXPECT_EQ(std::count_if(events.begin(), end,
                            [](const Event& event) {
                                const auto* line = std::get_if<LogLine>(&event);
                                return line != nullptr && line->text.find("packet info") == 0;
                            }),
              0);
}

TEST_F(SelectedTrackSeekTest, ASelectedAudioTrackSearchesNoSyncFrame) {
    OpenedFile opened = openQuietly(twoTracks());
    auto audio = opened->startedTrack(1);
    auto video = opened->startedTrack(0);
    const ReadResult result = audio->readAt(10 * kSecond);
    EXPECT_EQ(result.status, AMEDIA_OK);
    EXPECT_THAT(mEvents.linesBeginning("found I Frame"), IsEmpty());
    EXPECT_THAT(mEvents.linesBeginning("********** Track Type[5] skip"), IsEmpty());
    EXPECT_EQ(result.timeUs, 7 * kSecond);
    EXPECT_EQ(video->readAt(10 * kSecond).timeUs, 7 * kSecond + kPacedPageUs);
}

TEST_F(SelectedTrackSeekTest, ASerialNumberOfAllOnesIsSelectedWhenNoTrackIs) {
    OpenedFile opened = openQuietly(twoTracks(0xFFFFFFFF));
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    video->stop();
    audio->stop();
    EXPECT_EQ(mEvents.count(infoLine("trackStop:serialNo=-2147483643, mSelectedSerialNo=-1")), 1U);
    mEvents.clear();
    // No track is registered, but the stopped one has the number that means "none".
    video->readAt(0);
    EXPECT_TRUE(mEvents.holds(debugLine("Start seekToTime")));
    EXPECT_THAT(mEvents.linesBeginning("OgmTrack:mSerialNo"), IsEmpty());
    mEvents.clear();
    audio->readAt(0);
    EXPECT_FALSE(mEvents.holds(debugLine("Start seekToTime")));
}

}  // namespace
}  // namespace android::ogm::test::seek_test
