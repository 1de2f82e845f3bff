// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "ElementaryStreams.h"
#include "MemorySource.h"
#include "Microseconds.h"
#include "OgmFile.h"
#include "Plugin.h"
#include "Samples.h"
#include "SilentLog.h"

namespace android::ogm::test::fault_sweep_test {
namespace {

/** How many reads of a sample fail; they are spread over the whole session. */
constexpr size_t kReadsOfASample = 25;

/** After this many reads the source returns nothing more, which ends every search in the file. */
constexpr size_t kReadBudget = 60000;
constexpr size_t kReadBudgetOfATinyFile = 2500;
constexpr size_t kMaxBuffers = 1000;

struct Frame {
    Bytes bytes;
    int64_t timeUs;

    bool operator==(const Frame& other) const {
        return bytes == other.bytes && timeUs == other.timeUs;
    }
};

/** Conditions for the result of every read, whatever the source did. */
void expectLegal(const ReadResult& result, bool isVideo) {
    switch (result.status) {
        case AMEDIA_OK:
            EXPECT_TRUE(result.hasBuffer);
            EXPECT_TRUE(result.timeUs.has_value());
            EXPECT_EQ(result.isSyncFrame.has_value(), isVideo);
            EXPECT_EQ(result.rangeOffset, 0U);
            EXPECT_LE(result.bytes.size(), result.capacity);
            break;
        case AMEDIA_ERROR_END_OF_STREAM:
        case AMEDIA_ERROR_IO:
            EXPECT_FALSE(result.hasBuffer);
            break;
        default:
            ADD_FAILURE() << "status " << result.status;
    }
}

/** Opens a file, reads it, seeks, and frees it. */
class Session {
  public:
    explicit Session(const Bytes& bytes, ReadFault fault = nullptr) : mSource(bytes) {
        if (fault) {
            mSource.setFault(std::move(fault));
        }
        mExtractor = std::make_unique<Extractor>(openFile(mSource));
        mReadsAtOpen = mSource.readCount();
        for (size_t i = 0; i < mExtractor->countTracks(); ++i) {
            const std::string mime = mExtractor->trackFormat(i).string("mime").value_or("");
            mIsVideo.push_back(mime.rfind("video/", 0) == 0);
            mTracks.push_back(mExtractor->startedTrack(i));
        }
    }

    /** Reads all tracks alternately to their ends, then seeks to a few times and reads a little. */
    void play() {
        readInTurn(kMaxBuffers);
        for (const int64_t timeUs : {4 * kSecond, 60 * kSecond, 3100 * kSecond / 1000}) {
            for (size_t i = 0; i < mTracks.size(); ++i) {
                expectLegal(mTracks[i]->readAt(timeUs), mIsVideo[i]);
            }
            readInTurn(12);
        }
    }

    /** All frames of the selected track after a seek to the start. */
    std::vector<Frame> replay() {
        mSource.clearFault();
        std::vector<Frame> frames;
        if (mTracks.empty()) {
            return frames;
        }
        ReadResult result = mTracks[0]->readAt(0);
        while (result.hasBuffer) {
            frames.push_back({std::move(result.bytes), result.timeUs.value_or(-1)});
            result = mTracks[0]->read();
        }
        EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
        return frames;
    }

    size_t readCount() const { return mSource.readCount(); }
    size_t readsAtOpen() const { return mReadsAtOpen; }
    size_t trackCount() const { return mTracks.size(); }

  private:
    void readInTurn(size_t limit) {
        bool any = true;
        for (size_t count = 0; any && count < limit;) {
            any = false;
            for (size_t i = 0; i < mTracks.size(); ++i, ++count) {
                const ReadResult result = mTracks[i]->read();
                expectLegal(result, mIsVideo[i]);
                any = any || result.hasBuffer;
            }
        }
    }

    MemorySource mSource;
    std::unique_ptr<Extractor> mExtractor;
    std::vector<std::unique_ptr<Track>> mTracks;
    std::vector<bool> mIsVideo;
    size_t mReadsAtOpen = 0;
};

TEST(SweptFault, HitsTheReadItNamesInItsWayOnceOrFromThenOn) {
    constexpr size_t kBudget = 9;
    const auto resultsOf = [](Failure failure, Lasting lasting) {
        const ReadFault fault = sweptFault(3, failure, lasting, kBudget);
        std::vector<std::optional<ssize_t>> results;
        for (const size_t index : {2, 3, 4}) {
            results.push_back(fault({index, 0, 100}));
        }
        return results;
    };
    using Results = std::vector<std::optional<ssize_t>>;
    EXPECT_EQ(resultsOf(Failure::kRefused, Lasting::kOnce),
              (Results{std::nullopt, kReadRefused, std::nullopt}));
    EXPECT_EQ(resultsOf(Failure::kShort, Lasting::kFromThenOn), (Results{std::nullopt, 99, 99}));
    EXPECT_EQ(resultsOf(Failure::kNothing, Lasting::kOnce),
              (Results{std::nullopt, 0, std::nullopt}));
}

TEST(SweptFault, LetsNothingBeReadAfterTheBudget) {
    const ReadFault fault = sweptFault(3, Failure::kRefused, Lasting::kOnce, 9);
    EXPECT_EQ(fault({8, 0, 100}), std::nullopt);
    EXPECT_EQ(fault({9, 0, 100}), 0);
}

/** Makes one read after the other fail, each in three ways, once and permanently. */
class FaultSweepTest : public ::testing::Test {
  protected:
    void sweep(const Bytes& bytes, size_t stride, size_t budget) {
        mBudget = budget;
        Session healthy(bytes);
        healthy.play();
        const size_t reads = healthy.readCount();
        ASSERT_LT(reads, mBudget);
        mReplay = healthy.replay();
        ASSERT_FALSE(mReplay.empty());
        for (size_t read = 0; read < reads && !HasFailure(); read += stride) {
            for (const Failure failure : {Failure::kRefused, Failure::kShort, Failure::kNothing}) {
                for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
                    SCOPED_TRACE("read " + std::to_string(read) + ", fault " +
                                 std::to_string(static_cast<int>(failure)) +
                                 (lasting == Lasting::kOnce ? ", once" : ", from then on"));
                    playWithFault(bytes, read, healthy,
                                  sweptFault(read, failure, lasting, mBudget));
                }
            }
        }
    }

    void playWithFault(const Bytes& bytes, size_t read, const Session& healthy, ReadFault fault) {
        Session session(bytes, std::move(fault));
        EXPECT_LE(session.trackCount(), healthy.trackCount());
        session.play();
        // If opening fails before the first data page, the cursor has no position, and the
        // first page of the file is read again and again. In a file that was opened without
        // a failure, a negative page size may move the cursor back, but reading ends.
        if (read >= healthy.readsAtOpen()) {
            EXPECT_LT(session.readCount(), mBudget);
            EXPECT_EQ(session.trackCount(), healthy.trackCount());
            expectReplay(session.replay());
        }
    }

    /**
     * A file that was opened without a failure plays completely after a seek to the start, whatever
     * failed in between. MPEG audio may confirm its header only now, which costs the first frame.
     */
    void expectReplay(const std::vector<Frame>& frames) const {
        const bool lostOne = frames.size() + 1 == mReplay.size();
        const size_t lost = lostOne && mMayLoseTheFirst ? 1 : 0;
        EXPECT_TRUE(std::equal(frames.begin(), frames.end(), mReplay.begin() + lost, mReplay.end()))
                << frames.size() << " of " << mReplay.size() << " frames";
    }

    SilentLog mSilence;
    std::vector<Frame> mReplay;
    size_t mBudget = 0;
    bool mMayLoseTheFirst = false;
};

TEST_F(FaultSweepTest, EveryReadOfAShortVideoAndPcmFileMayFail) {
    OneVideoOneAudio content;
    content.videoFrames = 7;
    content.audioPackets = 7;
    sweep(oneVideoOneAudioFile(content).bytes(), 1, kReadBudgetOfATinyFile);
}

TEST_F(FaultSweepTest, EveryReadOfAFileWithDividedPacketsAndJunkMayFail) {
    AudioHeader ac3;
    ac3.subtype = "2000";
    ac3.samplesPerUnit = 48000;
    VideoHeader mpeg;
    mpeg.subtype = "FMP4";
    OgmFile file;
    file.addHeader(1, mpeg);
    file.addHeader(2, ac3);
    file.addHeader(3, textHeader());
    file.add(OggPage(1).granule(1).packet(dataPacket(
            kSyncPacket,
            joined({visualObjectSequence(), VideoObjectLayer().bytes(), videoObjectPlane(0)}))));
    for (uint32_t i = 1; i < 5; ++i) {
        const Bytes divided = dataPacket(kPlainPacket, videoObjectPlane(i % 3, 599, i));
        file.add(OggPage(1).granule(i).openPacket(head(divided, 510)));
        Ac3Frame frame;
        frame.seed = i;
        file.add(OggPage(2)
                         .granule(uint64_t{i} * 3072)
                         .packet(audioPacket(frame.bytes()))
                         .packet(audioPacket(frame.bytes(), 0x41)));
        file.add(OggPage(1).granule(i + 1).continued().packet(tail(divided, 510)));
        file.addData(3, i, dataPacket(kPlainPacket, bytesOf("text")));
        if (i % 3 == 0) {
            file.addJunk(5);
            file.add(OggPage(2).granule(uint64_t{i} * 3072));
        }
    }
    sweep(file.bytes(), 1, kReadBudgetOfATinyFile);
}

/** Samples, with failing reads spread over the session. */
class SampleFaultSweepTest : public FaultSweepTest,
                             public ::testing::WithParamInterface<const char*> {};

TEST_P(SampleFaultSweepTest, ReadsMayFail) {
    const Bytes bytes = sampleBytes(GetParam());
    mMayLoseTheFirst = std::string(GetParam()) == "xvid_refused_mp3";
    Session session(bytes);
    session.play();
    // An odd stride reaches every kind of read, because they come in groups of three and four.
    sweep(bytes, session.readCount() / kReadsOfASample | 1, kReadBudget);
}

std::string nameOf(const ::testing::TestParamInfo<const char*>& info) {
    return info.param;
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleFaultSweepTest, ::testing::ValuesIn(kShortSamples), nameOf);

/** Every wrong size of a sample. */
class SampleSizeTest : public ::testing::TestWithParam<const char*> {};

TEST_P(SampleSizeTest, AWrongSizeOnlyCostsPackets) {
    const SilentLog silence;
    const Bytes bytes = sampleBytes(GetParam());
    const auto size = static_cast<int64_t>(bytes.size());
    const auto packetsWith = [&](int64_t reported) {
        MemorySource source(bytes);
        source.setReportedSize(reported);
        const Extractor extractor = openFile(source);
        auto track = extractor.startedTrack(0);
        return track->drain().size();
    };
    const size_t all = packetsWith(size);
    size_t before = 0;
    for (const int64_t reported : {INT64_MIN, int64_t{-1}, int64_t{0}, int64_t{1}, size / 3,
                                   size / 2, size * 2 / 3, size - 1}) {
        const size_t packets = packetsWith(reported);
        EXPECT_GE(packets, before) << reported;
        EXPECT_LE(packets, all) << reported;
        before = packets;
    }
    EXPECT_GT(before, 0U);
    for (const int64_t reported : {size + 1, 2 * size, 100 * size, INT64_MAX}) {
        EXPECT_EQ(packetsWith(reported), all) << reported;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleSizeTest, ::testing::ValuesIn(kShortSamples), nameOf);

}  // namespace
}  // namespace android::ogm::test::fault_sweep_test
