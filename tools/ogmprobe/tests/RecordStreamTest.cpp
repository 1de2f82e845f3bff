// SPDX-License-Identifier: Apache-2.0
#include "records/RecordStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <thread>

#include <nlohmann/json.hpp>

#include "RingFixture.h"
#include "plugin/TrackJson.h"
#include "records/RecordFields.h"

namespace ogmprobe {
namespace {

TrackDescription someTrack() {
    TrackDescription track;
    track.index = 1;
    track.mime = "video/mp4v-es";
    track.width = 176;
    track.esds = {3, 0, 255};
    classify(track);
    return track;
}

/** One record of each kind, none of them all zeros. */
std::vector<Record> oneOfEach() {
    return {
            FileOpened{"name", "video/ogm", 5, 2, 1000, {{"key", "int32(1)"}}},
            TrackListed{someTrack()},
            TrackStarted{someTrack()},
            PlaybackReady{2},
            SeekBegun{-1},
            PacketPlayed{1, {40, true, {1, 2, 3}, 77}, -40},
            PacketPlayed{1, {80, false, {}, 78}, std::nullopt},
            TrackEnded{1, std::nullopt},
            TrackEnded{0, "reason"},
            SeekRange{true, 90},
            SeekLanded{7, {{0, 6, true}, {1, std::nullopt, false}}, 3, 4},
            Progress{9},
            Failure{ExitCode::kNotTaken, "message", true},
            LogLine{4, "Tag", "text"},
            Unconfined{"reason"},
            CallBegun{PluginFunction::kRead, 1},
            CallEnded{PluginFunction::kFreeExtractor, std::nullopt, -10006},
            BufferRead{1, 40, true, 3},
            SourceRead{-5, 100, -1004, 7},
    };
}

template <typename T>
bool equal(const T& left, const T& right) {
    return left == right;
}

template <typename T>
requires requires(const T& value) {
    fieldsOf(value);
}
bool equal(const T& left, const T& right);

bool equal(const TrackDescription& left, const TrackDescription& right) {
    // Kind and codec included.
    return toJson(left) == toJson(right) && left.codec.suffix == right.codec.suffix;
}

bool equal(const std::vector<Landing>& left, const std::vector<Landing>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const Landing& a, const Landing& b) { return equal(a, b); });
}

template <typename T>
requires requires(const T& value) {
    fieldsOf(value);
}
bool equal(const T& left, const T& right) {
    const auto others = fieldsOf(right);
    return std::apply(
            [&others](const auto&... fields) {
                return std::apply(
                        [&](const auto&... others) { return (equal(fields, others) && ...); },
                        others);
            },
            fieldsOf(left));
}

bool sameRecord(const Record& left, const Record& right) {
    return left.index() == right.index() &&
           std::visit(
                   [&right](const auto& record) {
                       return equal(record, std::get<std::decay_t<decltype(record)>>(right));
                   },
                   left);
}

class RecordStreamTest : public testing::Test {
  protected:
    void write(const std::vector<Record>& records) {
        for (const Record& record : records) {
            mWriter.write(record);
        }
    }

    test::RingFixture mRing;
    RecordWriter mWriter{mRing.writer()};
    RecordReader mReader{mRing.reader()};
};

TEST_F(RecordStreamTest, CarriesEveryFieldOfEveryKindOfRecord) {
    const std::vector<Record> records = oneOfEach();
    std::set<size_t> kinds;
    write(records);
    mWriter.end();
    for (const Record& expected : records) {
        const auto record = mReader.next();
        ASSERT_TRUE(record);
        EXPECT_TRUE(sameRecord(*record, expected)) << "kind " << expected.index();
        kinds.insert(expected.index());
    }
    EXPECT_FALSE(mReader.next());
    EXPECT_EQ(kinds.size(), std::variant_size_v<Record>);
}

TEST_F(RecordStreamTest, CarriesPacketsLargerThanTheRing) {
    PacketPlayed large;
    large.packet.bytes.assign(3 * RingMemory::kCapacity, 0x5a);
    std::thread writing([&] {
        write({large, Progress{1}});
        mRing.endWriting();
    });
    EXPECT_TRUE(sameRecord(*mReader.next(), large));
    EXPECT_TRUE(sameRecord(*mReader.next(), Progress{1}));
    EXPECT_THROW(mReader.next(), RingEnded);
    writing.join();
}

TEST_F(RecordStreamTest, DropsARecordInTheMiddleOfWhichTheWriterDied) {
    write({Progress{1}, SeekBegun{2}});
    mRing.memory().written -= 1;
    mRing.hangUp();
    EXPECT_TRUE(sameRecord(*mReader.next(), Progress{1}));
    EXPECT_THROW(mReader.next(), RingEnded);
}

/** Records as stored in a ring, to be damaged. */
class RecordsInRing {
  public:
    RecordsInRing() {
        RecordWriter writer(mRing.writer());
        for (const Record& record : oneOfEach()) {
            writer.write(record);
        }
        mSize = mRing.memory().written;
        mRing.endWriting();
    }

    uint64_t size() const { return mSize; }
    uint8_t& byte(size_t offset) { return mRing.memory().bytes[offset]; }

    /** Reads until the damage is found or nothing is left; returns the number of records. */
    size_t readAll() {
        size_t count = 0;
        try {
            while (mReader.next()) {
                ++count;
            }
        } catch (const RingDamaged&) {
        } catch (const RingEnded&) {
        }
        return count;
    }

    std::optional<Record> readFirst() { return mReader.next(); }

  private:
    test::RingFixture mRing;
    RecordReader mReader{mRing.reader()};
    uint64_t mSize = 0;
};

constexpr size_t kTypeOffset = 0;
constexpr size_t kNumberOffset = 2;
constexpr size_t kFirstTextSizeOffset = 4;

TEST(DamagedRecord, IsRefusedWithAnUnknownType) {
    RecordsInRing records;
    records.byte(kTypeOffset) = std::variant_size_v<Record>;
    EXPECT_THROW(records.readFirst(), RingDamaged);
}

TEST(DamagedRecord, IsRefusedOutOfItsTurn) {
    RecordsInRing records;
    records.byte(kNumberOffset) ^= 1;
    EXPECT_THROW(records.readFirst(), RingDamaged);
}

TEST(DamagedRecord, IsRefusedWithATextBeyondAllBounds) {
    RecordsInRing records;
    records.byte(kFirstTextSizeOffset + 2) = 2;
    EXPECT_THROW(records.readFirst(), RingDamaged);
}

TEST(DamagedRecord, DoesNoHarmWhateverIsChanged) {
    std::minstd_rand random(1);
    for (int round = 0; round < 1000; ++round) {
        RecordsInRing records;
        for (int i = 0; i < 1 + round % 4; ++i) {
            records.byte(random() % records.size()) = static_cast<uint8_t>(random());
        }
        EXPECT_LE(records.readAll(), oneOfEach().size());
    }
}

TEST(DamagedRecord, DoesNoHarmMadeOfRandomBytes) {
    std::minstd_rand random(1);
    for (int round = 0; round < 1000; ++round) {
        test::RingFixture ring;
        constexpr size_t kSize = 4096;
        for (size_t i = 0; i < kSize; ++i) {
            // Many small values, so that types and lengths are often right.
            ring.memory().bytes[i] = static_cast<uint8_t>(random() % (round % 2 == 0 ? 256 : 3));
        }
        ring.memory().written = kSize;
        ring.hangUp();
        RecordReader reader(ring.reader());
        EXPECT_ANY_THROW(while (reader.next()){});
    }
}

}  // namespace
}  // namespace ogmprobe
