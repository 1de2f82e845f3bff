// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FileText.h"
#include "Process.h"
#include "TemporaryFolder.h"

/** Compares the program's whole output with stored texts in data/answers/. */
namespace ogmprobe::test::answers {

namespace fs = std::filesystem;

/** The offset of the page with this number, from 0, in an undamaged file. */
inline size_t pageOffset(const std::string& bytes, size_t number) {
    size_t offset = 0;
    for (size_t i = 0; i < number; ++i) {
        offset = bytes.find("OggS", offset + 1);
    }
    return offset;
}

/** Copies of samples, by their names, each with one change. */
inline std::map<std::string, std::string> damagedCopies() {
    const auto sample = [](const char* name) {
        return fileText(fs::path(OGMPROBE_SAMPLES) / name);
    };
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
    copies["empty.ogm"] = "";
    return copies;
}

inline std::string digestOf(const std::string& text) {
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

/** The text; of a long text only the beginning, and a digest of the whole. */
inline std::string shortened(const std::string& text) {
    constexpr int64_t kMostLines = 90;
    constexpr size_t kKept = 40;
    const int64_t lines = std::count(text.begin(), text.end(), '\n');
    if (lines <= kMostLines) {
        return text;
    }
    size_t end = 0;
    for (size_t i = 0; i < kKept; ++i) {
        end = text.find('\n', end) + 1;
    }
    return text.substr(0, end) + "... " + std::to_string(lines) + " lines, digest " +
           digestOf(text) + "\n";
}

inline std::string replacedAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/** Replaces, in log lines, `11-22 19:48:26  1234  1234]`. */
inline std::string withoutTimes(const std::string& text) {
    static const std::regex stamp("\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d +\\d+ +\\d+$");
    constexpr size_t kLongestStamp = 40;
    std::string plain;
    size_t done = 0;
    // Most of the text cannot be part of one, and regular expressions are slow without
    // optimisation.
    for (size_t end = 0; (end = text.find(']', end)) != std::string::npos; ++end) {
        const size_t begin = std::max(done, end - std::min(end, kLongestStamp));
        const std::string before = text.substr(begin, end - begin);
        std::smatch match;
        if (!before.empty() && std::isdigit(static_cast<unsigned char>(before.back())) != 0 &&
            std::regex_search(before, match, stamp)) {
            const auto place = static_cast<size_t>(match.position());
            plain += text.substr(done, begin + place - done) + "TIME PROCESS THREAD";
            done = end;
        }
    }
    return plain + text.substr(done);
}

/** Runs the program with samples and the files of a temporary folder, and records its output. */
class Asking {
  public:
    Asking() {
        fs::create_directory(mFolder.path("out"));
        fs::create_directory(mFolder.path("folder.ogm"));
    }

    std::string answerTo(const std::vector<std::string>& words,
                         const ProcessSetup& setup = {}) const {
        std::vector<std::string> arguments;
        std::string line = "$ ogmprobe";
        for (const std::string& word : words) {
            arguments.push_back(pathOf(word));
            line += " " + word;
        }
        const ProcessResult result = runProbe(arguments, setup);
        return line + "\n" + shortened(plain(result.out)) + "--- standard error\n" +
               shortened(plain(result.err)) + "--- exit code " + std::to_string(result.exitCode) +
               "\n" + writtenFiles();
    }

    /** Empties the folder that commands write to. */
    void clearOutput() const {
        fs::remove_all(mFolder.path("out"));
        fs::create_directory(mFolder.path("out"));
    }

  private:
    std::string pathOf(const std::string& argument) const {
        static const std::map<std::string, std::string> copies = damagedCopies();
        for (const auto& [name, bytes] : copies) {
            if (argument.rfind(name, 0) == 0) {
                mFolder.write(name, bytes);
            }
        }
        const fs::path sample = fs::path(OGMPROBE_SAMPLES) / argument;
        const bool isOutput = argument.rfind("out/", 0) == 0;
        const bool isFile = argument.find(".ogm") != std::string::npos;
        return isFile && fs::exists(sample) ? sample.string()
               : isOutput || isFile         ? mFolder.path(argument)
                                            : argument;
    }

    /** The text without folder names, and without times and process numbers of log lines. */
    std::string plain(const std::string& text) const {
        return withoutTimes(replacedAll(replacedAll(text, OGMPROBE_SAMPLES "/", ""),
                                        mFolder.path().string() + "/", ""));
    }

    std::string writtenFiles() const {
        std::set<std::string> lines;
        for (const auto& entry : fs::directory_iterator(mFolder.path("out"))) {
            const std::string bytes = fileText(entry.path());
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

/** With sanitizers the plug-in may write to standard error, so that their reports are seen. */
inline std::string comparable(std::string answer) {
    if (!testedBuild().isSanitized()) {
        return answer;
    }
    const std::string begin = "--- standard error";
    for (size_t at = 0; (at = answer.find(begin, at)) != std::string::npos;) {
        answer.erase(at, answer.find("--- exit code", at) - at);
    }
    return answer;
}

/** Compares the output with the stored text of that name, or stores it on request. */
inline void expectKept(const std::string& name, const std::string& answer) {
    const fs::path kept = fs::path(OGMPROBE_ANSWERS) / (name + ".txt");
    if (std::getenv("OGMPROBE_UPDATE_ANSWERS") != nullptr) {
        std::ofstream(kept, std::ios::binary) << answer;
    }
    EXPECT_EQ(comparable(answer), comparable(fileText(kept)));
}

/** The names of the stored texts that have this prefix, or of all others. */
inline std::set<std::string> keptNames(const std::string& beginning, bool beginSo) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(OGMPROBE_ANSWERS)) {
        const std::string name = entry.path().stem();
        if ((name.rfind(beginning, 0) == 0) == beginSo) {
            names.insert(name);
        }
    }
    return names;
}

}  // namespace ogmprobe::test::answers
