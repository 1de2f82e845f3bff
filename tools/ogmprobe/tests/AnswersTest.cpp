// SPDX-License-Identifier: Apache-2.0
// Compares the output of the commands, for the samples and for damaged copies of them, with stored
// texts in data/answers/. After an intended change:
//
//     OGMPROBE_UPDATE_ANSWERS=1 build/host/bin/ogmprobe_samples_test --gtest_filter='*Answers*'
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Asking.h"

namespace ogmprobe::test::answers_test {
namespace {

/** A command line; names of samples and of what `damagedCopies` makes stand for these files. */
struct Question {
    const char* name;
    std::vector<std::string> arguments;
};

std::ostream& operator<<(std::ostream& out, const Question& question) {
    return out << question.name;
}

const std::vector<Question>& questions() {
    static const std::vector<Question> all = {
            {"info_formats", {"info", "--format", "mpeg4_b_mp3.ogm"}},
            {"info_of_several", {"info", "divx3_pcm16.ogm", "mpeg4_vorbis.ogm", "cut.ogm"}},
            {"info_in_colour", {"--color", "always", "info", "mpeg4_vorbis.ogm", "text.ogm"}},
            {"info_json", {"info", "--json", "mpeg2_ac3.ogm", "no_such_file.ogm"}},
            {"info_of_damage", {"info", "header.ogm", "marker.ogm", "text.ogm"}},
            {"packets_of_a_span", {"packets", "mpeg4_b_mp3.ogm", "--from", "1", "--to", "0:01.3"}},
            {"packets_of_a_track", {"packets", "mpeg4_mp3_ac3.ogm", "--track", "2"}},
            {"packets_of_a_track_alone",
             {"packets", "mpeg4_mp3_ac3.ogm", "--only-track", "2", "--count", "9"}},
            {"packets_that_are_sync", {"packets", "mpeg4_b_mp3.ogm", "--sync-only", "--clock"}},
            {"packets_csv", {"packets", "--csv", "mpeg2_ac3.ogm", "--seek", "2", "--seek", "4.5"}},
            {"packets_json", {"packets", "--json", "mpeg4_pcm8.ogm", "cut.ogm", "--count", "5"}},
            {"packets_log",
             {"--log", "info", "packets", "divx3_pcm16.ogm", "--track", "0", "--count", "2"}},
            {"packets_after_the_end", {"packets", "mjpeg.ogm", "--seek", "100", "--count", "2"}},
            {"packets_quietly",
             {"--quiet", "packets", "mjpeg.ogm", "--only-track", "0", "--count", "1"}},
            {"seektest", {"seektest", "long_mpeg4_mp3.ogm", "--steps", "7"}},
            {"seektest_csv", {"seektest", "--csv", "--steps", "4", "mjpeg.ogm", "mpeg2_ac3.ogm"}},
            {"seektest_json", {"seektest", "--json", "--steps", "3", "mpeg4_mp3_ac3.ogm"}},
            {"seektest_strict", {"seektest", "--strict", "--steps", "4", "version.ogm"}},
            {"explain_verbose", {"explain", "--verbose", "mpeg2_ac3.ogm"}},
            {"explain_pcm", {"explain", "--verbose", "mpeg4_pcm8.ogm"}},
            {"explain_of_several", {"explain", "mjpeg.ogm", "version.ogm", "marker.ogm"}},
            {"explain_pages", {"explain", "--pages", "junk.ogm"}},
            {"explain_csv", {"explain", "--csv", "junk.ogm", "checksum.ogm"}},
            {"explain_json", {"explain", "--json", "junk.ogm"}},
            {"explain_strict", {"explain", "--strict", "granule.ogm"}},
            {"explain_of_a_cut_file", {"explain", "cut.ogm"}},
            {"explain_of_a_lost_header", {"explain", "header.ogm"}},
            {"explain_of_damaged_audio", {"explain", "frames.ogm"}},
            {"explain_of_no_media", {"explain", "text.ogm"}},
            {"sync", {"sync", "h264_mp3vbr.ogm"}},
            {"sync_packets", {"sync", "--packets", "mpeg4_2997_ac3.ogm"}},
            {"sync_csv", {"sync", "--csv", "mpeg4_b_mp3.ogm"}},
            {"sync_json", {"sync", "--json", "mpeg4_pcm8.ogm"}},
            {"sync_of_a_missing_file", {"sync", "--json", "no_such_file.ogm"}},
            {"sync_of_several", {"sync", "junk.ogm", "granule.ogm", "text.ogm"}},
            {"compare", {"compare", "mpeg4_b_mp3.ogm", "checksum.ogm"}},
            {"compare_reads", {"compare", "mpeg2_ac3.ogm", "junk.ogm", "--reads", "--seeks", "3"}},
            {"compare_json", {"compare", "--json", "mpeg4_mp3_ac3.ogm", "version.ogm", "--logs"}},
            {"compare_of_equals", {"compare", "mjpeg.ogm", "mjpeg.ogm", "--logs", "--reads"}},
            {"compare_with_refused", {"compare", "mjpeg.ogm", "text.ogm"}},
            {"check", {"check", "mpeg4_mp3_ac3.ogm"}},
            {"check_of_several",
             {"check", "--jobs", "2", "mjpeg.ogm", "cut.ogm", "marker.ogm", "text.ogm"}},
            {"check_csv", {"check", "--csv", "h264_mp3vbr.ogm", "mpeg4_vorbis.ogm"}},
            {"check_json", {"check", "--json", "divx3_pcm16.ogm"}},
            {"extract", {"extract", "mpeg4_mp3_ac3.ogm", "mpeg4_pcm8.ogm", "-o", "out/"}},
            {"extract_avi", {"extract", "divx3_pcm16.ogm", "-o", "out/", "--track", "0"}},
            {"extract_of_damage", {"extract", "marker.ogm", "cut.ogm", "-o", "out/"}},
            {"timeline", {"timeline", "mpeg2_ac3.ogm", "-o", "out/a.svg"}},
            {"timeline_of_a_span",
             {"timeline", "long_mpeg4_mp3.ogm", "-o", "out/a.svg", "--from", "10", "--to", "20"}},
            {"timeline_of_damage",
             {"timeline", "junk.ogm", "granule.ogm", "--svg", "-o", "out/", "--seek-steps", "2"}},
            {"wrong_option", {"packets", "mjpeg.ogm", "--frobnicate"}},
            {"wrong_time", {"packets", "mjpeg.ogm", "--from", "a while"}},
            {"wrong_span", {"packets", "mjpeg.ogm", "--from", "5", "--to", "5"}},
            {"wrong_count", {"packets", "mjpeg.ogm", "--count", "-1"}},
            {"wrong_track", {"extract", "mjpeg.ogm", "-o", "out/", "--track", "1"}},
            {"wrong_output", {"timeline", "mjpeg.ogm", "-o", "out/a.png"}},
            {"wrong_steps", {"seektest", "mjpeg.ogm", "--steps", "0"}},
            {"wrong_jobs", {"check", "mjpeg.ogm", "--jobs", "0"}},
            {"wrong_timeout", {"--timeout", "-1", "info", "mjpeg.ogm"}},
            {"wrong_level", {"--log", "loud", "info", "mjpeg.ogm"}},
            {"wrong_colour", {"--color", "green", "info", "mjpeg.ogm"}},
            {"wrong_plugin", {"--plugin", "text.ogm", "info", "--json", "mjpeg.ogm"}},
            {"wrong_page", {"check", "mjpeg.ogm", "--html", "out/a.txt"}},
            {"wrong_codecs", {"check", "mjpeg.ogm", "--codecs", "text.ogm"}},
            {"wrong_dump", {"compare", "mjpeg.ogm", "--device", "text.ogm"}},
            {"dump_with_reads", {"compare", "mjpeg.ogm", "--device", "text.ogm", "--reads"}},
            {"compare_of_one", {"compare", "mjpeg.ogm"}},
            {"compare_of_three", {"compare", "mjpeg.ogm", "cut.ogm", "junk.ogm"}},
            {"json_and_csv", {"sync", "mjpeg.ogm", "--json", "--csv"}},
            {"no_file", {"check"}},
            {"no_command", {}},
    };
    return all;
}

class Answers : public testing::TestWithParam<Question> {};

TEST_P(Answers, AreTheKeptOnes) {
    if (!canFilterSystemCalls()) {
        GTEST_SKIP() << "each answer has a warning more where system calls are not filtered";
    }
    answers::expectKept(GetParam().name, answers::Asking().answerTo(GetParam().arguments));
}

INSTANTIATE_TEST_SUITE_P(OnSamples, Answers, testing::ValuesIn(questions()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AnswersFolder, HoldsNoUnusedAnswer) {
    std::set<std::string> asked;
    for (const Question& question : questions()) {
        asked.insert(question.name);
    }
    EXPECT_EQ(answers::keptNames("all_", false), asked);
}

}  // namespace
}  // namespace ogmprobe::test::answers_test
