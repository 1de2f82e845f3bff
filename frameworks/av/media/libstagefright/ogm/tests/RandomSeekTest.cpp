// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "MemorySource.h"
#include "OgmFile.h"
#include "Plugin.h"
#include "Random.h"
#include "Samples.h"
#include "SeekModel.h"
#include "SilentLog.h"

namespace android::ogm::test::random_seek_test {
namespace {

constexpr size_t kRandomSeeks = 300;
constexpr size_t kMaxReads = 12;

struct Case {
    std::string sample;
    /** Index of the track that is created first and is therefore the selected one. */
    size_t selected;

    friend std::ostream& operator<<(std::ostream& stream, const Case& value) {
        return stream << value.sample << ", track " << value.selected << " selected";
    }
};

/** The serial number and the kind of each track, in the order of the header pages. */
struct TrackFacts {
    uint32_t serialNo;
    bool isAccessUnitAudio;
    bool isConvertedPcm;
};

std::vector<TrackFacts> tracksOf(const PagedFile& file, const Bytes& bytes,
                                 const Extractor& extractor) {
    std::vector<TrackFacts> tracks;
    for (const PagedFile::Page& page : file.pages) {
        const auto start = bytes.begin() + page.offset;
        if ((start[5] & kBeginOfStream) == 0) {
            break;
        }
        const std::string header(start + kPageHeaderSize + 1, start + kPageHeaderSize + 54);
        const std::string subtype = header.substr(9, 4);
        if (header.substr(1, 6) == "vorbis" || subtype == "XVID") {
            continue;
        }
        const bool audio = header.substr(1, 5) == "audio";
        tracks.push_back({page.serialNo, audio && (subtype == "0055" || subtype == "2000"),
                          audio && subtype == "0001" && header[41] == 8});
    }
    EXPECT_EQ(tracks.size(), extractor.countTracks());
    return tracks;
}

/** All that a track returns if it is read from its beginning to its end. */
struct StraightRun {
    std::vector<ReadResult> results;
    /** Number of the packet that the first result comes from. */
    size_t firstPacket = 0;
};

/**
 * Seeks in a sample and compares each read with a second implementation of seeking, which predicts
 * the packet. The buffer must be that of the straight run for this packet: the same bytes, time and
 * sync flag. Differences by design:
 *  - MPEG audio is only cut after two headers match, so the straight run loses the first frame. A
 *    seek does not reset the header, so a seek to the start returns that frame too.
 *  - A straight run of video and PCM tracks returns the comment packets before the data. The search
 *    for a sync frame skips that of the video.
 *  - Short files have no duration, because the search for it begins before the file. So they have
 *    no zone at the end in which a seek goes to the end of the file.
 */
class RandomSeekTest : public ::testing::TestWithParam<Case> {
  protected:
    RandomSeekTest()
        : mBytes(sampleBytes(GetParam().sample)),
          mFile(mBytes),
          mSource(mBytes),
          mExtractor(openFile(mSource)) {
        mFacts = tracksOf(mFile, mBytes, mExtractor);
        // The selected track comes first from here on.
        std::rotate(mFacts.begin(), mFacts.begin() + static_cast<ptrdiff_t>(GetParam().selected),
                    mFacts.end());
        runStraight();
        startTracks();
    }

    void runStraight() {
        MemorySource source(mBytes);
        const Extractor extractor = openFile(source);
        std::vector<std::unique_ptr<Track>> tracks;
        for (size_t i = 0; i < mFacts.size(); ++i) {
            tracks.push_back(extractor.startedTrack(indexOf(i)));
        }
        for (size_t i = 0; i < mFacts.size(); ++i) {
            StraightRun run;
            run.results = tracks[i]->drain();
            // The last queued packet is not returned.
            run.firstPacket = queuedPackets(mFacts[i].serialNo) - 1 - run.results.size();
            mStraight.push_back(std::move(run));
        }
    }

    /** How many packets of a stream are before the page that ends all reading. */
    size_t queuedPackets(uint32_t serialNo) const {
        size_t count = 0;
        for (const PagedFile::Page& page : mFile.pages) {
            const bool isTrack = std::any_of(
                    mFacts.begin(), mFacts.end(),
                    [&](const TrackFacts& facts) { return facts.serialNo == page.serialNo; });
            if (isTrack && !page.hasSuccessor) {
                break;
            }
            count += page.serialNo == serialNo ? page.packetCount : 0;
        }
        return count;
    }

    size_t indexOf(size_t track) const { return (track + GetParam().selected) % mFacts.size(); }

    void startTracks() {
        std::vector<SeekModel::TrackModel> models;
        for (size_t i = 0; i < mFacts.size(); ++i) {
            mTracks.push_back(mExtractor.startedTrack(indexOf(i)));
            const TrackFacts& facts = mFacts[i];
            models.push_back({facts.serialNo,
                              [&](size_t packet) { return !facts.isAccessUnitAudio || packet > 0; },
                              [this, i](size_t packet) {
                                  const ReadResult* result = straightResult(i, packet);
                                  return result != nullptr && result->isSyncFrame == 1;
                              }});
        }
        const auto durationUs = mExtractor.fileFormat().int64(AMEDIAFORMAT_KEY_DURATION);
        mModel.emplace(mFile, durationUs.value_or(0), std::move(models));
        for (const auto& track : mTracks) {
            track->read();  // from here on MPEG audio knows its frames
        }
    }

    const ReadResult* straightResult(size_t track, size_t packet) const {
        const StraightRun& run = mStraight[track];
        const size_t index = packet - run.firstPacket;
        return packet >= run.firstPacket && index < run.results.size() ? &run.results[index]
                                                                       : nullptr;
    }

    /** The bytes of a packet after its header. */
    Bytes payload(size_t track, size_t packet) const {
        const PagedFile::Stream& stream = mFile.streams.at(mFacts[track].serialNo);
        const Bytes& bytes = stream.packets.at(packet);
        return tail(bytes, stream.isVideo ? 1 : audioHeaderLength(bytes.front()));
    }

    void expectPacket(const ReadResult& result, size_t track, std::optional<size_t> packet) {
        if (!packet) {
            EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
            EXPECT_FALSE(result.hasBuffer);
            return;
        }
        ASSERT_EQ(result.status, AMEDIA_OK);
        ASSERT_TRUE(result.hasBuffer);
        if (!mFacts[track].isConvertedPcm) {
            EXPECT_TRUE(result.bytes == payload(track, *packet)) << "packet " << *packet;
        }
        const ReadResult* expected = straightResult(track, *packet);
        if (expected == nullptr) {
            EXPECT_TRUE(mFacts[track].isAccessUnitAudio && *packet == 1) << "packet " << *packet;
            return;
        }
        EXPECT_TRUE(result.bytes == expected->bytes) << "packet " << *packet;
        EXPECT_EQ(result.timeUs, expected->timeUs) << "packet " << *packet;
        EXPECT_EQ(result.isSyncFrame, expected->isSyncFrame) << "packet " << *packet;
        EXPECT_EQ(result.targetTimeUs, expected->targetTimeUs) << "packet " << *packet;
    }

    void seek(int64_t timeUs) {
        SCOPED_TRACE("seek to " + std::to_string(timeUs));
        mModel->seek(timeUs);
        const auto expected = mModel->read(0);
        expectPacket(mTracks[0]->read(SEEK | static_cast<uint32_t>(mRandom.below(5)), timeUs), 0,
                     expected);
    }

    void read(size_t track) {
        const auto expected = mModel->read(track);
        expectPacket(mTracks[track]->read(), track, expected);
    }

    /** Reads random tracks; a seek of a track that is not selected is just a read. */
    void readSome(size_t count) {
        for (size_t i = 0; i < count && !HasFailure(); ++i) {
            const size_t track = mRandom.below(mTracks.size());
            SCOPED_TRACE("read " + std::to_string(i) + " of track " + std::to_string(track));
            if (track != 0 && mRandom.happens(1, 4)) {
                const auto expected = mModel->read(track);
                expectPacket(mTracks[track]->readAt(randomTime()), track, expected);
            } else {
                read(track);
            }
        }
    }

    int64_t endUs() const { return mStraight[0].results.back().timeUs.value_or(0) + 200000; }

    int64_t randomTime() {
        const auto range = static_cast<uint64_t>(endUs() + 4000000);
        return static_cast<int64_t>(mRandom.below(range)) - 2000000;
    }

    /** Special times to seek to. */
    std::vector<int64_t> notableTimes() const {
        const int64_t durationUs =
                mExtractor.fileFormat().int64(AMEDIAFORMAT_KEY_DURATION).value_or(0);
        const int64_t end = durationUs != 0 ? durationUs : endUs();
        std::vector<int64_t> times{INT64_MIN / 2, -5000000,      -1,           0,       1,
                                   2999999,       3000000,       3000001,      end / 3, end * 2 / 3,
                                   end - 200001,  end - 200000,  end - 199999, end - 1, end,
                                   end + 1,       end + 5000000, INT64_MAX};
        for (const ReadResult& result : mStraight[0].results) {
            if (result.isSyncFrame == 1) {
                for (const int64_t aside : {-1, 0, 1}) {
                    times.push_back(*result.timeUs + aside);
                }
            }
        }
        return times;
    }

    SilentLog mSilence;
    Bytes mBytes;
    PagedFile mFile;
    std::vector<TrackFacts> mFacts;
    std::vector<StraightRun> mStraight;
    MemorySource mSource;
    Extractor mExtractor;
    std::vector<std::unique_ptr<Track>> mTracks;
    std::optional<SeekModel> mModel;
    Random mRandom{20240917};
};

TEST_P(RandomSeekTest, TheStraightRunGivesThePacketsOfTheFile) {
    for (size_t track = 0; track < mFacts.size(); ++track) {
        const StraightRun& run = mStraight[track];
        ASSERT_GT(run.results.size(), 50U);
        // The comment packet is not an audio frame, and the first MPEG audio frame is lost.
        EXPECT_LE(run.firstPacket, mFacts[track].isAccessUnitAudio ? 2U : 0U);
        for (size_t i = 0; i < run.results.size() && !mFacts[track].isConvertedPcm; ++i) {
            EXPECT_TRUE(run.results[i].bytes == payload(track, run.firstPacket + i)) << i;
        }
    }
}

TEST_P(RandomSeekTest, ASeekToANotableTimeGivesThePacketsOfTheStraightRun) {
    for (const int64_t timeUs : notableTimes()) {
        seek(timeUs);
        SCOPED_TRACE("after the seek to " + std::to_string(timeUs));
        readSome(kMaxReads);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(RandomSeekTest, HundredsOfRandomSeeksGiveThePacketsOfTheStraightRun) {
    for (size_t i = 0; i < kRandomSeeks; ++i) {
        const int64_t timeUs = randomTime();
        seek(timeUs);
        SCOPED_TRACE("after the seek to " + std::to_string(timeUs));
        readSome(mRandom.below(kMaxReads));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_P(RandomSeekTest, AfterASeekEveryTrackRunsStraightToTheEnd) {
    for (const int64_t timeUs : {int64_t{0}, endUs() / 2}) {
        seek(timeUs);
        SCOPED_TRACE("after the seek to " + std::to_string(timeUs));
        for (size_t track = 0; track < mTracks.size(); ++track) {
            for (size_t i = 0; i <= mStraight[track].results.size() + 2; ++i) {
                read(track);
            }
            ASSERT_FALSE(HasFailure());
        }
    }
}

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const char* sample : kShortSamples) {
        cases.push_back({sample, 0});
    }
    for (const char* sample : {"divx3_pcm16", "h264_mp3vbr", "mpeg2_ac3", "mpeg4_2997_ac3",
                               "mpeg4_b_mp3", "mpeg4_mp3_ac3", "mpeg4_pcm8", kLongSample}) {
        cases.push_back({sample, 1});
    }
    cases.push_back({"mpeg4_mp3_ac3", 2});
    cases.push_back({kLongSample, 0});
    return cases;
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info) {
    return info.param.sample + "_" + std::to_string(info.param.selected);
}

INSTANTIATE_TEST_SUITE_P(Samples, RandomSeekTest, ::testing::ValuesIn(allCases()), nameOf);

}  // namespace
}  // namespace android::ogm::test::random_seek_test
