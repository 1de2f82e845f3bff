// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "MemorySource.h"
#include "Microseconds.h"
#include "OgmFile.h"
#include "Plugin.h"
#include "Random.h"
#include "SeekFiles.h"
#include "SilentLog.h"

namespace android::ogm::test {
namespace {

constexpr size_t kPackets = 1500;
constexpr size_t kStreams = 3;
constexpr uint32_t kVideoSerialNo = 1;

/**
 * Each track is read from its own thread. The data source has no lock, so two reads of it at the
 * same time are a race, and so is each unlocked access to what tracks share. Nothing is logged:
 * a logger's lock would synchronise the threads and hide races.
 */
class ThreadTest : public ::testing::Test {
  protected:
    ThreadTest() : mSource(file().bytes()), mExtractor(openFile(mSource)) {
        for (size_t i = 0; i < kStreams; ++i) {
            mTracks.push_back(mExtractor.startedTrack(i));
        }
    }

    /** One video, one PCM and one AC-3 stream of 60 s, interleaved. */
    static OgmFile file() {
        OgmFile file;
        AudioHeader ac3;
        ac3.subtype = "2000";
        ac3.samplesPerUnit = 48000;
        file.addHeader(kVideoSerialNo, VideoHeader());
        file.addHeader(2, AudioHeader());
        file.addHeader(3, ac3);
        for (size_t i = 0; i < kPackets; ++i) {
            file.addData(kVideoSerialNo, i + 1,
                         dataPacket(i % 50 == 0 ? kSyncPacket : kPlainPacket, payload(0, i)));
            file.addData(2, (i + 1) * 320, audioPacket(payload(1, i)));
            file.addData(3, (i + 1) * 1920, audioPacket(payload(2, i)));
        }
        return file;
    }

    /** A payload with the stream's number and the index; for the third stream an AC-3 frame. */
    static Bytes payload(size_t stream, size_t index) {
        Bytes bytes(stream == 2 ? 128 : 40, static_cast<uint8_t>(stream));
        if (stream == 2) {
            bytes[0] = 0x0B;
            bytes[1] = 0x77;
            bytes[4] = 0;
            bytes[5] = 0x40;
        }
        bytes[10] = static_cast<uint8_t>(index >> 8);
        bytes[11] = static_cast<uint8_t>(index);
        return bytes;
    }

    static size_t indexIn(const Bytes& bytes) { return size_t{bytes.at(10)} << 8 | bytes.at(11); }

    /** Reads to the end and checks that the packets are complete and in order. */
    static size_t readToTheEnd(Track& track, size_t stream) {
        size_t count = 0;
        for (const ReadResult& result : track.readAll()) {
            EXPECT_EQ(result.bytes, payload(stream, count++));
        }
        return count;
    }

    /**
     * Reads until it has `wanted` packets. A seek of the selected track may repeat or skip packets,
     * but each packet is complete.
     */
    static void readMany(Track& track, size_t stream, size_t wanted) {
        for (size_t count = 0; count < wanted;) {
            const ReadResult result = track.read();
            if (result.status == AMEDIA_ERROR_END_OF_STREAM) {
                std::this_thread::yield();
                continue;
            }
            ASSERT_EQ(result.status, AMEDIA_OK);
            EXPECT_EQ(result.bytes, payload(stream, indexIn(result.bytes)));
            ++count;
        }
    }

    SilentLog mSilence;
    MemorySource mSource;
    Extractor mExtractor;
    std::vector<std::unique_ptr<Track>> mTracks;
};

TEST_F(ThreadTest, EachTrackReadFromItsOwnThreadGivesAllItsPackets) {
    std::vector<std::future<size_t>> counts;
    for (size_t i = 0; i < kStreams; ++i) {
        counts.push_back(std::async(std::launch::async, readToTheEnd, std::ref(*mTracks[i]), i));
    }
    // The last page of the first stream ends all reading; the last packet in each queue stays open.
    EXPECT_EQ(counts[0].get(), kPackets - 2);
    EXPECT_EQ(counts[1].get(), kPackets - 2);
    EXPECT_EQ(counts[2].get(), kPackets - 2);
}

TEST_F(ThreadTest, SeeksOfTheSelectedTrackDoNotDisturbReadsOfAnother) {
    std::vector<std::future<void>> readers;
    std::atomic<size_t> reading = kStreams - 1;
    for (size_t i = 1; i < kStreams; ++i) {
        readers.push_back(std::async(std::launch::async, [this, &reading, i] {
            readMany(*mTracks[i], i, 500);
            --reading;
        }));
    }
    Random random;
    for (int i = 0; i < 50 || reading > 0; ++i) {
        const auto timeUs = static_cast<int64_t>(random.below(55)) * kSecond;
        const ReadResult result = mTracks[0]->readAt(timeUs);
        // Sync frames are two seconds apart, so one is found without a step back.
        EXPECT_EQ(result.status, AMEDIA_OK) << timeUs;
        EXPECT_EQ(result.isSyncFrame, 1);
        EXPECT_LE(*result.timeUs, timeUs + 2 * kSecond);
        EXPECT_EQ(result.bytes, payload(0, indexIn(result.bytes)));
        mTracks[0]->read();
        std::this_thread::yield();
    }
    for (auto& reader : readers) {
        reader.get();
    }
}

TEST_F(ThreadTest, SeeksOfAllTracksAtOnceRunOneAfterTheOther) {
    std::vector<std::future<void>> seekers;
    for (size_t i = 0; i < kStreams; ++i) {
        seekers.push_back(std::async(std::launch::async, [track = mTracks[i].get(), i] {
            Random random(i);
            for (int round = 0; round < 100; ++round) {
                const ReadResult result =
                        track->readAt(static_cast<int64_t>(random.below(70)) * kSecond);
                if (result.hasBuffer) {
                    EXPECT_EQ(result.bytes, payload(i, indexIn(result.bytes)));
                }
            }
        }));
    }
    for (auto& seeker : seekers) {
        seeker.get();
    }
}

TEST_F(ThreadTest, FormatsMayBeRequestedWhileTheTracksRead) {
    std::vector<std::future<size_t>> counts;
    for (size_t i = 0; i < kStreams; ++i) {
        counts.push_back(std::async(std::launch::async, readToTheEnd, std::ref(*mTracks[i]), i));
    }
    for (int round = 0; round < 100; ++round) {
        for (size_t i = 0; i < kStreams; ++i) {
            const Format fromTrack;
            EXPECT_EQ(mTracks[i]->getFormat(fromTrack), AMEDIA_OK);
            EXPECT_TRUE(fromTrack.string("mime").has_value());
            const Format fromExtractor;
            // The first of these calls adds the thumbnail time.
            EXPECT_EQ(mExtractor.getTrackMetaData(fromExtractor, i, 1), AMEDIA_OK);
            EXPECT_EQ(fromExtractor.string("mime"), fromTrack.string("mime"));
        }
        EXPECT_EQ(mExtractor.fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
        EXPECT_EQ(mExtractor.countTracks(), kStreams);
    }
    for (auto& count : counts) {
        EXPECT_EQ(count.get(), kPackets - 2);
    }
}

TEST_F(ThreadTest, ExtractorsShareNothing) {
    std::vector<std::future<size_t>> counts;
    counts.reserve(4);
    for (int i = 0; i < 4; ++i) {
        counts.push_back(std::async(std::launch::async, [] {
            MemorySource source(file().bytes());
            const Extractor extractor = openFile(source);
            auto track = extractor.startedTrack(0);
            track->readAt(20 * kSecond);
            track->readAt(0);
            return track->readAll().size();
        }));
    }
    for (auto& count : counts) {
        // The seek has dropped the first packet.
        EXPECT_EQ(count.get(), kPackets - 3);
    }
}

TEST_F(ThreadTest, ATrackMayBeFreedOnAnotherThreadOnceAllReadsAreOver) {
    auto reading = std::async(std::launch::async, readToTheEnd, std::ref(*mTracks[2]), 2);
    reading.get();
    std::thread([this] { mTracks[0].reset(); }).join();
    auto rest = std::async(std::launch::async, [this] { return mTracks[1]->readAll().size(); });
    EXPECT_GT(rest.get(), 0U);
}

}  // namespace
}  // namespace android::ogm::test
