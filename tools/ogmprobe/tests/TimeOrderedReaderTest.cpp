// SPDX-License-Identifier: Apache-2.0
#include "jobs/TimeOrderedReader.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace ogmprobe {
namespace {

using testing::ElementsAre;

constexpr auto kNone = std::nullopt;

/** Returns packets with scripted times; a seek goes to the first time at or after its target. */
class ScriptedStream : public PacketStream {
  public:
    ScriptedStream(std::string name, std::vector<int64_t> times, std::vector<std::string>& journal)
        : mName(std::move(name)), mTimes(std::move(times)), mJournal(journal) {}

    std::optional<Packet> read(const std::optional<SeekRequest>& seek) override {
        if (seek) {
            mJournal.push_back(fmt::format("seek {} to {} mode {}", mName, seek->timeUs,
                                           static_cast<int>(seek->mode)));
            mNext = 0;
            while (mNext < mTimes.size() && mTimes[mNext] < seek->timeUs) {
                ++mNext;
            }
        }
        if (mNext == mTimes.size()) {
            EXPECT_FALSE(mEnded && !seek) << "read again after its end";
            mEnded = true;
            return std::nullopt;
        }
        mEnded = false;
        return Packet{mTimes[mNext++], true, {}};
    }

  private:
    const std::string mName;
    const std::vector<int64_t> mTimes;
    std::vector<std::string>& mJournal;
    size_t mNext = 0;
    bool mEnded = false;
};

class TimeOrderedReaderTest : public testing::Test {
  protected:
    ScriptedStream stream(const std::string& name, std::vector<int64_t> times) {
        return ScriptedStream(name, std::move(times), mJournal);
    }

    /** "STREAM:TIME" for each packet up to the end. */
    static std::vector<std::string> rest(TimeOrderedReader& reader) {
        std::vector<std::string> packets;
        while (const auto packet = reader.next()) {
            packets.push_back(fmt::format("{}:{}", packet->stream, packet->packet.timeUs));
        }
        return packets;
    }

    std::vector<std::string> mJournal;
};

TEST_F(TimeOrderedReaderTest, GivesNothingWithoutStreams) {
    TimeOrderedReader reader({}, 0);
    EXPECT_FALSE(reader.next());
}

TEST_F(TimeOrderedReaderTest, MergesStreamsByTime) {
    auto video = stream("video", {0, 40, 80});
    auto audio = stream("audio", {0, 30, 60, 90});
    TimeOrderedReader reader({&video, &audio}, 0);
    EXPECT_THAT(rest(reader), ElementsAre("0:0", "1:0", "1:30", "0:40", "1:60", "0:80", "1:90"));
}

TEST_F(TimeOrderedReaderTest, KeepsTheOrderOfAStreamWhoseTimesGoBack) {
    auto video = stream("video", {0, 120, 40, 80, 240});
    auto audio = stream("audio", {10, 50, 100, 130});
    TimeOrderedReader reader({&video, &audio}, 0);
    EXPECT_THAT(rest(reader), ElementsAre("0:0", "1:10", "1:50", "1:100", "0:120", "0:40", "0:80",
                                          "1:130", "0:240"));
}

TEST_F(TimeOrderedReaderTest, ReportsTheTimeToTheNextPacketOfTheSameStream) {
    auto video = stream("video", {0, 80, 40});
    auto audio = stream("audio", {20});
    TimeOrderedReader reader({&video, &audio}, 0);
    EXPECT_EQ(reader.next()->untilNextUs, 80);
    EXPECT_EQ(reader.next()->untilNextUs, kNone);
    EXPECT_EQ(reader.next()->untilNextUs, -40);
    EXPECT_EQ(reader.next()->untilNextUs, kNone);
}

TEST_F(TimeOrderedReaderTest, SeeksTheLeadFirstAndTheOthersToWhereItLanded) {
    auto audio = stream("audio", {0, 30, 60, 90, 120});
    auto video = stream("video", {0, 40, 80, 120});
    TimeOrderedReader reader({&audio, &video}, 1);
    reader.seek(50);
    EXPECT_THAT(mJournal, ElementsAre("seek video to 50 mode 2", "seek audio to 80 mode 3"));
    EXPECT_THAT(rest(reader), ElementsAre("1:80", "0:90", "0:120", "1:120"));
}

TEST_F(TimeOrderedReaderTest, SeeksTheOthersToTheTargetWhenTheLeadReturnsNothing) {
    auto video = stream("video", {0});
    auto audio = stream("audio", {0, 70});
    TimeOrderedReader reader({&video, &audio}, 0);
    reader.seek(50);
    EXPECT_THAT(mJournal, ElementsAre("seek video to 50 mode 2", "seek audio to 50 mode 3"));
    EXPECT_EQ(reader.pending(0), nullptr);
    EXPECT_EQ(reader.pending(1)->timeUs, 70);
}

TEST_F(TimeOrderedReaderTest, SeeksTheOthersToNoNegativeTime) {
    auto video = stream("video", {-20, 40});
    auto audio = stream("audio", {0});
    TimeOrderedReader reader({&video, &audio}, 0);
    reader.seek(-100);
    EXPECT_THAT(mJournal, ElementsAre("seek video to -100 mode 2", "seek audio to 0 mode 3"));
}

TEST_F(TimeOrderedReaderTest, ReadsOnAfterASeekFromTheEnd) {
    auto video = stream("video", {0, 40});
    TimeOrderedReader reader({&video}, 0);
    EXPECT_THAT(rest(reader), ElementsAre("0:0", "0:40"));
    reader.seek(40);
    EXPECT_THAT(rest(reader), ElementsAre("0:40"));
}

TEST_F(TimeOrderedReaderTest, DoesNotReadADroppedStreamUntilTheNextSeek) {
    auto video = stream("video", {0, 40});
    auto audio = stream("audio", {10, 50});
    TimeOrderedReader reader({&video, &audio}, 0);
    reader.next();
    reader.drop(0);
    EXPECT_THAT(rest(reader), ElementsAre("1:10", "1:50"));
    reader.seek(0);
    EXPECT_THAT(rest(reader), ElementsAre("0:0", "1:10", "0:40", "1:50"));
}

}  // namespace
}  // namespace ogmprobe
