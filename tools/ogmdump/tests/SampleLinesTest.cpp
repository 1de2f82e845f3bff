// SPDX-License-Identifier: Apache-2.0
#include "SampleLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace ogmdump {
namespace {

using nlohmann::json;
using testing::ElementsAre;

/** Keeps what is written. */
class Written {
  public:
    Written() : mFile(open_memstream(&mText, &mSize)) {}
    ~Written() {
        std::fclose(mFile);
        std::free(mText);
    }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;

    FILE* file() { return mFile; }
    /** Of each line the time and the time until the next. */
    std::vector<std::string> times() {
        std::fflush(mFile);
        std::vector<std::string> all;
        std::istringstream lines(mText);
        for (std::string line; std::getline(lines, line);) {
            const json parsed = json::parse(line);
            all.push_back(parsed["time_us"].dump() + " " + parsed["until_next_us"].dump());
        }
        return all;
    }

  private:
    char* mText = nullptr;
    size_t mSize = 0;
    FILE* mFile;
};

Sample sampleAt(size_t track, int64_t timeUs) {
    Sample sample;
    sample.track = track;
    sample.timeUs = timeUs;
    return sample;
}

TEST(SampleLines, HaveTheTimeUntilTheNextOfTheirTrack) {
    Written out;
    SampleLines lines(out.file(), 2, UINT64_MAX);
    lines.add(sampleAt(0, 0));
    lines.add(sampleAt(1, 5));
    lines.add(sampleAt(1, 8));
    EXPECT_THAT(out.times(), ElementsAre());
    lines.add(sampleAt(0, 40));
    EXPECT_THAT(out.times(), ElementsAre("0 40", "5 3"));
    lines.end();
    EXPECT_THAT(out.times(), ElementsAre("0 40", "5 3", "8 null", "40 null"));
}

TEST(SampleLines, ATimeThatGoesBackIsADifferenceBelowZero) {
    Written out;
    SampleLines lines(out.file(), 1, UINT64_MAX);
    lines.add(sampleAt(0, 80));
    lines.add(sampleAt(0, 40));
    lines.add(sampleAt(0, INT64_MIN));
    lines.end();
    EXPECT_THAT(out.times(),
                ElementsAre("80 -40", "40 9223372036854775768", "-9223372036854775808 null"));
}

TEST(SampleLines, AreNoMoreThanRequestedInEachTrack) {
    Written out;
    SampleLines lines(out.file(), 2, 1);
    lines.add(sampleAt(0, 0));
    lines.add(sampleAt(0, 40));
    EXPECT_FALSE(lines.isFull());
    lines.add(sampleAt(1, 5));
    lines.add(sampleAt(1, 8));
    EXPECT_TRUE(lines.isFull());
    lines.end();
    EXPECT_THAT(out.times(), ElementsAre("0 40", "5 3"));
}

TEST(SampleLines, AreCountedAgainAfterTheEnd) {
    Written out;
    SampleLines lines(out.file(), 1, 1);
    for (const int64_t timeUs : {0, 40}) {
        lines.add(sampleAt(0, timeUs));
        lines.end();
    }
    EXPECT_THAT(out.times(), ElementsAre("0 null", "40 null"));
}

TEST(SampleLines, TheDigestIsThatOfTheStandard) {
    EXPECT_EQ(digestOf(nullptr, 0), 0xcbf29ce484222325U);
    const uint8_t letter = 'a';
    EXPECT_EQ(digestOf(&letter, 1), 0xaf63dc4c8601ec8cU);
}

}  // namespace
}  // namespace ogmdump
