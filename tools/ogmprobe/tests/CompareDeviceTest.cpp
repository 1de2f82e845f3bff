// SPDX-License-Identifier: Apache-2.0
#include "ExplainedFile.h"
#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

/** What a device would print for a script of the fake plug-in. */
std::vector<json> dumpOf(const std::vector<json>& tracks) {
    std::vector<json> lines = {{{"type", "header"}, {"schema_version", 1}, {"digest", "fnv1a64"}}};
    for (size_t i = 0; i < tracks.size(); ++i) {
        const json& format = tracks[i]["format"];
        json line = {{"type", "track"}, {"index", i}, {"csd_0", nullptr}, {"format", ""}};
        for (const auto& [name, key] :
             std::map<std::string, std::string>{{"mime", "mime"},
                                                {"duration_us", "durationUs"},
                                                {"width", "width"},
                                                {"height", "height"},
                                                {"frame_rate", "frame-rate"},
                                                {"sample_rate", "sample-rate"},
                                                {"channel_count", "channel-count"}}) {
            line[name] = format.contains(key) ? format[key] : json(nullptr);
        }
        lines.push_back(line);
    }
    return lines;
}

/** A file of the fake plug-in, and a dump whose lines can be changed. */
class DeviceFile {
  public:
    DeviceFile() : mLines(dumpOf({fakeVideo(), fakeAudio()})) {
        const auto own = FakePlugin::run({"packets", "--json", path()});
        std::istringstream stream(own.out);
        for (std::string text; std::getline(stream, text);) {
            const json line = json::parse(text);
            if (line["type"] != "header") {
                mLines.push_back(line);
            }
        }
    }

    std::vector<json>& lines() { return mLines; }
    /** The line of a buffer; buffers are counted over all tracks. */
    json& buffer(size_t number) { return mLines[3 + number]; }

    ProcessResult run(const std::vector<std::string>& options = {}) const {
        return runWith(text(), options);
    }

    ProcessResult runPiped() const {
        ProcessSetup setup;
        setup.in = text();
        return FakePlugin::run({"compare", path(), "--device", "-"}, setup);
    }

    ProcessResult runWith(const std::string& dump,
                          const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"compare", path(), "--device",
                                              mPlugin.folder().write("dump.jsonl", dump)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return FakePlugin::run(arguments);
    }

    std::vector<std::string> differences() const {
        std::vector<std::string> texts;
        const json document = json::parse(run({"--json"}).out);
        for (const json& difference : document["differences"]) {
            texts.push_back(difference["text"].get<std::string>());
        }
        return texts;
    }

  private:
    std::string text() const {
        std::string text;
        for (const json& line : mLines) {
            text += line.dump() + "\n";
        }
        return text;
    }
    std::string path() const { return mPlugin.file(fakeFile({fakeVideo(), fakeAudio()})); }

    FakePlugin mPlugin;
    std::vector<json> mLines;
};

TEST(CompareDevice, ThatReturnsTheSameHasNoDifference) {
    const DeviceFile file;
    const auto result = file.run();
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    EXPECT_THAT(result.out, HasSubstr("\nB: a device, by "));
    EXPECT_THAT(result.out, HasSubstr("No difference: 2 tracks, 5 packets, as far as a device"));
    const json document = json::parse(file.run({"--json"}).out);
    EXPECT_EQ(document["same"], true);
    EXPECT_EQ(document["a"]["device"], false);
    EXPECT_EQ(document["b"]["device"], true);
}

TEST(CompareDevice, ADumpMayComeThroughAPipe) {
    const DeviceFile file;
    const auto result = file.runPiped();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("\nB: a device, by -\nNo difference: 2 tracks"));
}

TEST(CompareDevice, AnotherTimeIsADifference) {
    DeviceFile file;
    file.buffer(1)["time_us"] = file.buffer(1)["time_us"].get<int64_t>() + 1;
    EXPECT_EQ(file.run().exitCode, 5);
    EXPECT_THAT(file.differences(), ElementsAre(HasSubstr(": time ")));
}

TEST(CompareDevice, AnotherFormatIsADifference) {
    DeviceFile file;
    file.lines()[1]["width"] = 66;
    file.lines()[2]["csd_0"] = "1190";
    EXPECT_THAT(file.differences(), ElementsAre("track 0: width 64 in A, 66 in B",
                                                "track 1: csd-0 nothing in A, 1190 in B"));
}

TEST(CompareDevice, ABufferThatIsMissingIsADifference) {
    DeviceFile file;
    file.lines().erase(file.lines().end() - 2);
    EXPECT_THAT(file.differences(), ElementsAre(HasSubstr("only in A")));
}

TEST(CompareDevice, ADumpThatBreaksOffIsADifference) {
    DeviceFile file;
    file.lines().pop_back();
    const auto result = file.run();
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.out, HasSubstr("\"the dump has no end line\" in B"));
}

TEST(CompareDevice, AFailureThereIsReported) {
    DeviceFile file;
    file.lines().erase(file.lines().begin() + 1, file.lines().end());
    file.lines().push_back({{"type", "end"},
                            {"exit_code", 2},
                            {"errors", {{{"exit_code", 2}, {"message", "cannot open: why"}}}},
                            {"warnings", json::array()}});
    const auto result = file.run();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("on the device: cannot open: why"));
    EXPECT_THAT(result.out, IsEmpty());
    file.lines().back()["exit_code"] = 3;
    EXPECT_EQ(file.run().exitCode, 5);
    EXPECT_THAT(file.differences(), ElementsAre(HasSubstr("opening: taken in A, ")));
}

constexpr const char* kHeader = R"({"type":"header","schema_version":1,"digest":"fnv1a64"})";

/** Texts that are no dumps, with the reason. */
using Refused = std::vector<std::pair<std::string, std::string>>;

void expectRefused(const DeviceFile& file, const Refused& cases) {
    for (const auto& [text, reason] : cases) {
        const auto result = file.runWith(text);
        EXPECT_EQ(result.exitCode, 2) << reason;
        EXPECT_THAT(result.err, EndsWith("no dump of a device: " + reason + "\n"));
    }
}

TEST(CompareDevice, AFileThatIsNotADumpIsRefused) {
    const std::string header = kHeader;
    expectRefused(DeviceFile(), {{"", "it is empty"},
                                 {"text", "line 1 is not from ogmdump"},
                                 {"[1]\n", "line 1 is not from ogmdump"},
                                 {std::string(100000, '['), "line 1 is not from ogmdump"},
                                 {"{\"type\":\"end\",\"exit_code\":0}",
                                  "line 1: it does not begin with a header line"},
                                 {R"({"type":"header","schema_version":2,"digest":"fnv1a64"})",
                                  "line 1: it is of another version than this program's"},
                                 {R"({"type":"header","schema_version":1,"digest":"md5"})",
                                  "line 1: it is of another version than this program's"},
                                 {header + "\n{\"type\":\"seek\",\"target_us\":0}",
                                  "line 2: it was made with seeks, which are not compared"}});
}

TEST(CompareDevice, SaysWhatIsWrongWithALineOfADump) {
    DeviceFile file;
    const std::string header = kHeader;
    const std::string track = "\n" + file.lines()[1].dump();
    const auto buffer = [](const std::string& digest) {
        return R"(
{"type":"buffer","track":0,"time_us":0,"size":1,"sync":true,"digest":")" +
               digest + "\"}";
    };
    expectRefused(
            file,
            {{header + "\n{\"type\":\"other\"}", "line 2: a line has an unknown type"},
             {header + "\n{\"type\":\"track\",\"index\":-1}",
              "line 2: a track's number is out of range"},
             {header + "\n{\"type\":\"track\",\"index\":100000}",
              "line 2: a track's number is out of range"},
             {header + "\n{\"type\":\"track\",\"index\":99999}", "line 2 is not from ogmdump"},
             {header + "\n{\"type\":\"end\",\"exit_code\":2,\"errors\":[]}",
              "line 2 is not from ogmdump"},
             {header + buffer("0"), "line 2: a buffer is of a track that has no line"},
             {header + track + buffer("0g"), "line 3: a digest is no hexadecimal number"},
             {header + track + buffer(""), "line 3: a digest is no hexadecimal number"},
             {header + track + buffer("10000000000000000"),
              "line 3: a digest is no hexadecimal number"},
             {std::string((1 << 20) + 2, ' '), "line 1: it is too long"},
             {std::string(1 << 20, ' ') + "\n", "line 1 is not from ogmdump"}});
}

TEST(CompareDevice, IgnoresWhatADeviceDoesNotReport) {
    for (const char* option : {"--reads", "--logs", "--plugin-b=x"}) {
        EXPECT_EQ(runProbe({"compare", "a.ogm", "--device", "d", option}).exitCode, 1) << option;
    }
    EXPECT_EQ(runProbe({"compare", "a.ogm", "b.ogm", "--device", "d"}).exitCode, 1);
    const auto missing = runProbe({"compare", "a.ogm", "--device", "/nowhere"});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_THAT(missing.err, HasSubstr("/nowhere): cannot open: No such file or directory"));
}

}  // namespace
}  // namespace ogmprobe::test
