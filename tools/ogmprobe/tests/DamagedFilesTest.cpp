// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "Process.h"
#include "TemporaryFolder.h"

namespace ogmprobe::test::damaged_files_test {
namespace {

using nlohmann::json;

constexpr const char* kSamples[] = {"mpeg4_b_mp3", "h264_mp3vbr",    "mpeg4_mp3_ac3", "divx3_pcm16",
                                    "mpeg2_ac3",   "mpeg4_2997_ac3", "mpeg4_vorbis",  "mjpeg"};
constexpr size_t kFiles = 160;

// Enough for everything that is read when a file is opened, and fast to write.
constexpr size_t kSampleBytes = 100000;

std::string beginningOfSample(const std::string& name) {
    std::ifstream file(std::string(OGMPROBE_SAMPLES "/") + name + ".ogm", std::ios::binary);
    std::string bytes(kSampleBytes, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(file.gcount()));
    return bytes;
}

/** Damages bytes: each call in another way, but all runs in the same ways. */
class Damage {
  public:
    void operator()(std::string& bytes) {
        // Prefer the headers, where damage has more effect.
        const size_t reach = below(2) == 0 ? 1000 : bytes.size();
        const size_t place = below(reach);
        const size_t length = 1 + below(300);
        switch (below(5)) {
            case 0:
                bytes.resize(place);
                break;
            case 1:
                bytes.erase(place, length);
                break;
            case 2:
                bytes.insert(place, length, byte());
                break;
            case 3:
                bytes.replace(place, length, bytes, below(reach), length);
                break;
            default:
                for (size_t count = 1 + below(8); count > 0; --count) {
                    const size_t where = below(reach);
                    bytes[where] = byte();
                }
        }
    }

  private:
    size_t below(size_t limit) { return mRandom() % limit; }
    char byte() { return static_cast<char>(mRandom()); }

    std::minstd_rand mRandom{2};
};

class DamagedFiles : public testing::Test {
  protected:
    DamagedFiles() {
        Damage damage;
        for (size_t i = 0; i < kFiles; ++i) {
            const char* sample = kSamples[i % std::size(kSamples)];
            std::string bytes = beginningOfSample(sample);
            damage(bytes);
            mPaths.push_back(mFolder.write(sample + std::to_string(i) + ".ogm", bytes));
        }
    }

    /** Searches that never end are given up soon. */
    ProcessResult info(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"info", "--timeout", "0.1"});
        arguments.insert(arguments.end(), mPaths.begin(), mPaths.end());
        return runProbe(arguments);
    }

    TemporaryFolder mFolder;
    std::vector<std::string> mPaths;
};

TEST_F(DamagedFiles, EachHaveTheirFateInOneJsonDocument) {
    const ProcessResult result = info({"--json"});
    const json document = json::parse(result.out);
    EXPECT_EQ(document["errors"], json::array());
    ASSERT_EQ(document["files"].size(), kFiles);
    int worst = 0;
    std::set<int> codes;
    for (size_t i = 0; i < kFiles; ++i) {
        const json& file = document["files"][i];
        EXPECT_EQ(file["path"], mPaths[i]);
        const auto code = file["exit_code"].get<int>();
        EXPECT_EQ(file["errors"].empty(), code == 0) << mPaths[i];
        EXPECT_TRUE(code != 0 || !file["container"].is_null()) << mPaths[i];
        worst = std::max(worst, code);
        codes.insert(code);
    }
    EXPECT_EQ(result.exitCode, worst);
    EXPECT_EQ(codes, (std::set<int>{0, 3, 4})) << "damage of every consequence";
}

TEST_F(DamagedFiles, AreEachNamedInText) {
    // Among the last ones is one that the extractor never finishes.
    mPaths.erase(mPaths.begin(), mPaths.end() - kFiles / 4);
    const ProcessResult result = info({});
    EXPECT_EQ(result.exitCode, 4);
    for (const std::string& path : mPaths) {
        const bool shown = result.out.find(path + ": ") != std::string::npos;
        const bool complainedAbout = result.err.find("error: " + path + ": ") != std::string::npos;
        EXPECT_TRUE(shown || complainedAbout) << path;
    }
}

/** The output must not depend on whether searches are shortened. */
void expectAsInFull(const std::string& path, const std::vector<std::string>& explainOptions) {
    std::vector<std::string> explain = {"explain", "--json", path};
    explain.insert(explain.end(), explainOptions.begin(), explainOptions.end());
    for (const std::vector<std::string>& command :
         {explain, {"seektest", "--json", path}, {"packets", "--json", path}}) {
        std::vector<std::string> inFull = {"--plugin", testedBuild().ownPlugin};
        inFull.insert(inFull.end(), command.begin(), command.end());
        const ProcessResult result = runProbe(command);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, runProbe(inFull).out) << command.front();
    }
}

TEST(HoleAtTheEnd, IsReportedAsWithEachSearchDoneInFull) {
    const TemporaryFolder folder;
    std::string bytes = beginningOfSample("mpeg4_b_mp3");
    bytes.resize(bytes.size() + (1 << 18));
    expectAsInFull(folder.write("hole.ogm", bytes), {"--verbose", "--pages"});
}

/** The beginning of a sample, with zeros before a page. */
std::string withHole(size_t size) {
    std::string bytes = beginningOfSample("mpeg4_b_mp3");
    return bytes.insert(bytes.find("OggS", bytes.size() / 2), size, '\0');
}

TEST(HoleInTheMiddle, IsReportedAsWithEachSearchDoneInFull) {
    const TemporaryFolder folder;
    const std::string path = folder.write("hole.ogm", withHole(40'000));
    expectAsInFull(path, {"--verbose"});
    const json document = json::parse(runProbe({"explain", "--json", path}).out);
    const auto& findings = document["findings"];
    const auto found = std::find_if(findings.begin(), findings.end(), [](const json& finding) {
        return finding["id"] == "junk-searched-again";
    });
    ASSERT_NE(found, findings.end());
    EXPECT_THAT((*found)["text"].get<std::string>(),
                testing::ContainsRegex("^40000 bytes of junk at offset [0-9]+ are searched [0-9]+ "
                                       "times more, with [0-9]+ reads, while the next page "));
}

TEST(HoleInTheMiddle, IsCalledAStandstillWhereItIsLarge) {
    const TemporaryFolder folder;
    const auto explained = [&folder](size_t size) {
        return runProbe({"explain", folder.write("hole.ogm", withHole(size))}).out;
    };
    constexpr const char* kStandstill = "; on a device, playing seems to stop there.";
    EXPECT_THAT(explained(3'000'000), testing::HasSubstr(kStandstill));
    EXPECT_THAT(explained(80'000), testing::HasSubstr("early by the length of the junk.\n"));
}

TEST(HoleInTheMiddle, IsSearchedInFullOnceForEachLookUp) {
    const TemporaryFolder folder;
    const ProcessResult result =
            runProbe({"packets", "--log", "info", folder.write("hole.ogm", withHole(10'000'000))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, testing::ContainsRegex("[0-9]+ more searches of the same junk for the "
                                                   "page at [0-9]+ were not done in full"));
}

}  // namespace
}  // namespace ogmprobe::test::damaged_files_test
