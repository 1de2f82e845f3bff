// SPDX-License-Identifier: Apache-2.0
// Compares the output of the commands, for the samples and for damaged copies of them, with stored
// texts in data/answers/. After an intended change:
//
//     OGMPROBE_UPDATE_ANSWERS=1 build/host/bin/ogmprobe_samples_test --gtest_filter='*Answers*'
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Process.h"
#include "TemporaryFolder.h"
#include "process/Sanitizers.h"

namespace ogmprobe::test::answers_test {
namespace {

namespace fs = std::filesystem;

/** A command line. It contains names of samples and of the files that damagedCopies() makes. */
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

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/** The page with this number, from 0, in an undamaged file. */
size_t pageOffset(const std::string& bytes, size_t number) {
    size_t offset = 0;
    for (size_t i = 0; i < number; ++i) {
        offset = bytes.find("OggS", offset + 1);
    }
    return offset;
}

/** Copies of samples, by their names, each with one change. */
std::map<std::string, std::string> damagedCopies() {
    const auto sample = [](const char* name) { return bytesOf(fs::path(OGMPROBE_SAMPLES) / name); };
    std::map<std::string, std::string> copies;
    const std::string ac3 = sample("mpeg2_ac3.ogm");
    copies["cut.ogm"] = ac3.substr(0, ac3.size() / 2);
    copies["junk.ogm"] = ac3;
    copies["junk.ogm"].insert(pageOffset(ac3, 40), 3000, '\x55');
    copies["header.ogm"] = ac3;
    copies["header.ogm"][pageOffset(ac3, 1)] = 'x';
    copies["frames.ogm"] = ac3;
    for (size_t page = 0, at = 0; (at = copies["frames.ogm"].find("\x0b\x77", at)) != ac3.npos;) {
        copies["frames.ogm"][at] = ++page % 7 == 0 ? '\0' : '\x0b';
        ++at;
    }
    const std::string audio = sample("mpeg4_b_mp3.ogm");
    copies["checksum.ogm"] = audio;
    copies["checksum.ogm"][pageOffset(audio, 30) + 100] ^= 1;
    copies["granule.ogm"] = audio;
    copies["granule.ogm"].replace(pageOffset(audio, 60) + 6, 8, std::string(8, '\x01'));
    copies["marker.ogm"] = audio;
    copies["marker.ogm"][407] = '\0';
    const std::string three = sample("mpeg4_mp3_ac3.ogm");
    copies["version.ogm"] = three;
    copies["version.ogm"][pageOffset(three, 50) + 4] = '\x07';
    copies["text.ogm"] = "no media\n";
    return copies;
}

std::string digestOf(const std::string& text) {
    constexpr uint64_t kStart = 0xcbf29ce484222325;
    constexpr uint64_t kPrime = 0x100000001b3;
    uint64_t digest = kStart;
    for (const char letter : text) {
        digest = (digest ^ static_cast<uint8_t>(letter)) * kPrime;
    }
    std::ostringstream out;
    out << std::hex << digest;
    return out.str();
}

/** The text; if it is long, only its beginning and a digest of the whole. */
std::string shortened(const std::string& text) {
    constexpr int64_t kMaxLines = 90;
    constexpr size_t kKept = 40;
    const int64_t lines = std::count(text.begin(), text.end(), '\n');
    if (lines <= kMaxLines) {
        return text;
    }
    size_t end = 0;
    for (size_t i = 0; i < kKept; ++i) {
        end = text.find('\n', end) + 1;
    }
    return text.substr(0, end) + "... " + std::to_string(lines) + " lines, digest " +
           digestOf(text) + "\n";
}

std::string replacedAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/** Runs the program in a folder with all files and returns its complete output. */
class Asking {
  public:
    Asking() {
        for (const auto& [name, bytes] : damagedCopies()) {
            mFolder.write(name, bytes);
        }
        fs::create_directory(mFolder.path("out"));
    }

    std::string answerTo(const Question& question) const {
        std::vector<std::string> arguments;
        std::string line = "$ ogmprobe";
        for (const std::string& argument : question.arguments) {
            arguments.push_back(pathOf(argument));
            line += " " + argument;
        }
        const ProcessResult result = runProbe(arguments);
        return line + "\n" + shortened(plain(result.out)) + "--- standard error\n" +
               shortened(plain(result.err)) + "--- exit code " + std::to_string(result.exitCode) +
               "\n" + writtenFiles();
    }

  private:
    std::string pathOf(const std::string& argument) const {
        const fs::path sample = fs::path(OGMPROBE_SAMPLES) / argument;
        const bool isOutput = argument.rfind("out/", 0) == 0;
        const bool isFile = argument.find(".ogm") != std::string::npos;
        return isFile && fs::exists(sample) ? sample.string()
               : isOutput || isFile         ? mFolder.path(argument)
                                            : argument;
    }

    /** Removes the folders, and times and processes of log lines. */
    std::string plain(const std::string& text) const {
        static const std::regex stamp("\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d +\\d+ +\\d+\\]");
        const std::string paths = replacedAll(replacedAll(text, OGMPROBE_SAMPLES "/", ""),
                                              mFolder.path().string() + "/", "");
        return std::regex_replace(paths, stamp, "TIME PROCESS THREAD]");
    }

    std::string writtenFiles() const {
        std::set<std::string> lines;
        for (const auto& entry : fs::directory_iterator(mFolder.path("out"))) {
            const std::string bytes = bytesOf(entry.path());
            lines.insert(entry.path().filename().string() + ": " + std::to_string(bytes.size()) +
                         " bytes, digest " + digestOf(plain(bytes)) + "\n");
        }
        std::string text;
        for (const std::string& line : lines) {
            text += "--- wrote " + line;
        }
        return text;
    }

    TemporaryFolder mFolder;
};

/** With sanitizers the plug-in may write to standard error, because of their reports. */
std::string comparable(const std::string& answer) {
    const size_t begin = answer.find("--- standard error");
    const size_t end = answer.rfind("--- exit code");
    return kSanitized && begin < end ? answer.substr(0, begin) + answer.substr(end) : answer;
}

class Answers : public testing::TestWithParam<Question> {};

TEST_P(Answers, AreTheKeptOnes) {
    if (!canFilterSystemCalls()) {
        GTEST_SKIP() << "each answer has a warning more where system calls are not filtered";
    }
    const fs::path kept = fs::path(OGMPROBE_ANSWERS) / (std::string(GetParam().name) + ".txt");
    const std::string answer = Asking().answerTo(GetParam());
    if (std::getenv("OGMPROBE_UPDATE_ANSWERS") != nullptr) {
        std::ofstream(kept, std::ios::binary) << answer;
    }
    EXPECT_EQ(comparable(answer), comparable(bytesOf(kept)));
}

INSTANTIATE_TEST_SUITE_P(OnSamples, Answers, testing::ValuesIn(questions()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AnswersFolder, HoldsNoUnusedAnswer) {
    std::set<std::string> asked;
    for (const Question& question : questions()) {
        asked.insert(std::string(question.name) + ".txt");
    }
    std::set<std::string> kept;
    for (const auto& entry : fs::directory_iterator(OGMPROBE_ANSWERS)) {
        kept.insert(entry.path().filename().string());
    }
    EXPECT_EQ(kept, asked);
}

}  // namespace
}  // namespace ogmprobe::test::answers_test
