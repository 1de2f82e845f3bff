// SPDX-License-Identifier: Apache-2.0
#include "ExplainedFile.h"

namespace ogmprobe::test::explain_duration_test {
namespace {

using namespace android::ogm::test;

constexpr const char* kSample = "mpeg4_b_mp3.ogm";
constexpr const char* kLongSample = "long_mpeg4_mp3.ogm";

/** The last page but `back` of the stream. */
size_t pageFromEnd(const Bytes& bytes, uint8_t serial, size_t back) {
    auto offsets = pageOffsets(bytes);
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) {
        if (bytes[*offset + 14] == serial && back-- == 0) {
            return *offset;
        }
    }
    return 0;
}

TEST(ExplainDuration, OfAShortFileIsUnknown) {
    const ExplainedFile file(sampleBytes(kSample));
    file.expectOne("duration-unknown-short-file",
                   "The duration is unknown: the plug-in looks for it in the last 650520 bytes, "
                   "and for a file of 206453 bytes it asks for bytes before the beginning, which "
                   "is refused.",
                   "parseMaxTime:Cannot find a page start, from -444067");
}

TEST(ExplainDuration, IsUnknownWithoutATrackInTheTail) {
    constexpr uint32_t kNoTrack = 9;
    OgmFile file = oneVideoOneAudioFile();
    file.addPages(kNoTrack, std::vector<Bytes>(11, Bytes(60000, 1)));
    const auto finding = ExplainedFile(file.bytes())
                                 .expectOne("duration-unknown",
                                            "The duration is unknown: the last 650520 bytes hold "
                                            "no page of a track with a time before the place "
                                            "where the search ends.",
                                            "parseMaxTime: This logic stream[9] is not exist in "
                                            "mTracks");
    EXPECT_EQ(finding["offset"], file.size() - 650520);
}

TEST(ExplainDuration, FromAGranuleOfMinus1IsReportedWithItsPage) {
    const Bytes bytes = sampleBytes(kLongSample);
    const size_t page = pageFromEnd(bytes, 0, 2);
    const auto finding =
            ExplainedFile(withGranule(bytes, page, ~uint64_t{0}))
                    .expectOne("duration-from-granule-minus-1",
                               "The plug-in reports a duration of 1844674407370.915161 s, but the "
                               "last pages say 90.044081 s: the page at offset " +
                                       std::to_string(page) +
                                       " has granule position -1 (no packet ends on it), which the "
                                       "plug-in takes for a time.",
                               "File duration is 1844674407370915161 us");
    EXPECT_EQ(finding["offset"], page);
    EXPECT_EQ(finding["track"], 0);
}

TEST(ExplainDuration, FromAStrayGranuleIsReportedWithItsPage) {
    const Bytes bytes = sampleBytes(kLongSample);
    const size_t page = pageFromEnd(bytes, 0, 30);
    ExplainedFile(withGranule(bytes, page, 90000))
            .expectOne(
                    "duration-from-stray-granule",
                    "The plug-in reports a duration of 3600.000000 s, but the last pages say "
                    "90.044081 s: the granule position of the page at offset " +
                            std::to_string(page) +
                            " is larger than those that follow, and the plug-in uses the largest.",
                    "File duration is 3600000000 us");
}

TEST(ExplainDuration, IsTooShortWhereTheSearchEndsEarly) {
    Bytes bytes = sampleBytes(kLongSample);
    const size_t page = pageFromEnd(bytes, 0, 30);
    bytes[page + 4] = 1;
    const auto found = ExplainedFile(bytes).findings("duration-too-short");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0]["text"].get<std::string>(),
                testing::EndsWith(" but the last pages say 90.044081 s: the search through the "
                                  "end of the file stopped before the last page."));
    EXPECT_EQ(found[0]["log"]["text"],
              "parseMaxTime:Cannot read a page header, at " + std::to_string(page));
}

TEST(ExplainDuration, OfAnOrdinaryLongFileIsNotReported) {
    const ExplainedFile file(sampleBytes(kLongSample));
    EXPECT_THAT(file.run().out, testing::Not(testing::HasSubstr("duration")));
}

}  // namespace
}  // namespace ogmprobe::test::explain_duration_test
