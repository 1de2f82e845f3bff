// SPDX-License-Identifier: Apache-2.0
#include "ExplainedFile.h"

namespace ogmprobe::test::explain_output_test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(Explain, ShowsPlaceReasonAndLogLineOfAFinding) {
    const ProcessResult result = ExplainedFile(sampleBytes("xvid_refused_mp3.ogm")).run();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
            result.out,
            "offset 0\n"
            "    No track for the video XVID stream with serial number 0: its codec \"XVID\" is "
            "not in the plug-in's list (case matters).\n"
            "    log: E OgmExtractor: unknow video codec: 58564944\n"
            "the whole file\n"
            "    The duration is unknown: the plug-in looks for it in the last 650520 bytes, and "
            "for a file of 220977 bytes it asks for bytes before the beginning, which is refused.\n"
            "    log: I OgmExtractor: parseMaxTime:Cannot find a page start, from -429543\n"
            "offset 21394, at 0.496326 s\n"
            "    1 frame of track 0 is not returned: the first frame is dropped when the second "
            "one confirms the stream's header, so the sound begins one frame late.\n"
            "(4 notes on every such file: --verbose)\n"
            "no track (video XVID, serial number 0): 151 packets in the file = 0 returned + 151 "
            "codec not supported\n"
            "track 0 (audio 0055): 232 frames in the file = 218 returned + 1 dropped as the first "
            "+ 1 left in the queue + 12 on the stream's last page\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(Explain, ListsPagesWithTheLinesThatWereWrittenThere) {
    const ExplainedFile file(sampleBytes("xvid_refused_mp3.ogm"));
    const std::string out = file.run({"--pages"}).out;
    EXPECT_THAT(out, HasSubstr("         0      85  -b-         0             0              -     "
                               "      0        1  video XVID, no track: codec not supported\n"
                               "         |  I OgmExtractor: Find Video pattern (sniff)\n"));
    EXPECT_THAT(out, HasSubstr("       227      57  ---         1             0       0.000000     "
                               "      1        1  audio 0055, track 0, comment header\n"));
    EXPECT_THAT(out, testing::Not(HasSubstr("begin read mime")));
    EXPECT_THAT(file.run({"--pages", "--verbose"}).out, HasSubstr("begin read mime:audio/mpeg"));
}

TEST(Explain, ListsJunkAndDamageAmongThePages) {
    Bytes bytes = sampleBytes("mpeg4_b_mp3.ogm");
    const auto offsets = pageOffsets(bytes);
    bytes[offsets[10]] = 'X';
    bytes[offsets[13] + 5] = 0x80;
    bytes[offsets[16] + 60] ^= 1;
    bytes.resize(bytes.size() - 1);
    const std::string out = ExplainedFile(bytes).run({"--pages"}).out;
    EXPECT_THAT(out, HasSubstr("\n     59134    5342  junk: no page begins here\n"));
    EXPECT_THAT(out, HasSubstr(", header damaged\n"));
    EXPECT_THAT(out, HasSubstr(", wrong checksum\n"));
    EXPECT_THAT(out, HasSubstr(", 1 byte missing\n"));
}

TEST(ExplainJson, HoldsStreamsFindingsAndPages) {
    const ExplainedFile file(sampleBytes("xvid_refused_mp3.ogm"));
    const auto document = file.document();
    EXPECT_EQ(document["schema_version"], 1);
    EXPECT_EQ(document["path"], file.path());
    EXPECT_EQ(document["exit_code"], 0);
    EXPECT_EQ(document["size"], 220977);
    EXPECT_EQ(document["duration_us"], 0);
    EXPECT_EQ(document["pages"], nullptr);
    EXPECT_THAT(document["errors"], IsEmpty());
    EXPECT_THAT(document["warnings"], IsEmpty());
    auto stream = document["streams"][0];
    stream.erase("ledger");
    EXPECT_EQ(stream, nlohmann::json({{"serial", 0},
                                      {"name", "video XVID"},
                                      {"header_offset", 0},
                                      {"pages", 35},
                                      {"packets", 151},
                                      {"track", nullptr},
                                      {"why_no_track", "codec not supported"},
                                      {"buffers", nullptr}}));
    EXPECT_EQ(document["streams"][1]["track"], 0);
    EXPECT_GT(document["streams"][1]["buffers"], 200);
    EXPECT_EQ(document["findings"].size(), 7U);

    const auto pages = file.document({"--pages"})["pages"];
    EXPECT_EQ(pages[3]["offset"], 227);
    EXPECT_EQ(pages[3]["track"], 0);
    EXPECT_EQ(pages[3]["log"][0]["text"], "Not get mMP3Header, size:29");
}

TEST(ExplainJson, HasTheErrorOfAFileThatCannotBeRead) {
    const ProcessResult result = runProbe({"explain", "--json", "missing.ogm"});
    EXPECT_EQ(result.exitCode, 2);
    const auto document = nlohmann::json::parse(result.out);
    EXPECT_EQ(document["errors"][0]["message"], "cannot open: No such file or directory");
    EXPECT_EQ(document["size"], nullptr);
}

std::string samplePath(const std::string& name) {
    return OGMPROBE_SAMPLES "/" + name;
}

TEST(ExplainOutput, OfSeveralFilesIsALineEach) {
    const std::string plain = samplePath("long_mpeg4_mp3.ogm");
    const std::string refused = samplePath("xvid_refused_mp3.ogm");
    const ProcessResult result = runProbe({"explain", plain, refused});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
    EXPECT_THAT(result.out, testing::ContainsRegex("xvid_refused_mp3.ogm: [0-9]+ findings?: "
                                                   "[a-z, -]*codec-not-supported"));
}

TEST(ExplainOutput, CanBeCommaSeparatedValues) {
    const ProcessResult result = runProbe({"explain", "--csv", samplePath("xvid_refused_mp3.ogm")});
    EXPECT_THAT(result.out, testing::StartsWith("file,id,usual,track,serial,offset,time,text\n"));
    EXPECT_THAT(result.out, testing::HasSubstr(",codec-not-supported,0,,0,0,,"));
}

TEST(ExplainOutput, EscapesOddCharactersOfTheFileAndOfItsName) {
    Bytes bytes = sampleBytes("xvid_refused_mp3.ogm");
    constexpr size_t kCodec = 28 + 9;
    ASSERT_EQ(bytes[kCodec], 'X');
    bytes[kCodec] = 0x1b;
    bytes[kCodec + 1] = '\n';
    const TemporaryFolder folder;
    const std::string name = "a\nb\x1b[31m\xe2\x80\xae.ogm";
    const std::string path = folder.write(name, std::string(bytes.begin(), bytes.end()));
    const std::string other = samplePath("mjpeg.ogm");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"explain", "--pages", "--verbose", path},
          {"explain", path, other},
          {"explain", path + "x"},
          {"info", path}}) {
        const ProcessResult result = runProbe(arguments);
        for (const std::string& text : {result.out, result.err}) {
            EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
            EXPECT_EQ(text.find("\xe2\x80\xae"), std::string::npos) << text;
            EXPECT_EQ(text.find("a\nb"), std::string::npos) << text;
        }
    }
    const auto document = nlohmann::json::parse(runProbe({"explain", "--json", path}).out);
    EXPECT_EQ(document["path"], path) << "data hold the name itself";
    EXPECT_THAT(runProbe({"explain", "--csv", path}).out,
                HasSubstr("\n\"" + path + "\",codec-not-supported,"));
}

TEST(ExplainOutput, FailsWhereItIsStrictAndSomethingUnusualIsFound) {
    EXPECT_EQ(runProbe({"explain", samplePath("xvid_refused_mp3.ogm")}).exitCode, 0);
    EXPECT_EQ(runProbe({"explain", "--strict", samplePath("xvid_refused_mp3.ogm")}).exitCode, 1);
}

TEST(ExplainOutput, DoesNotSayNothingToExplainOfAFileThatCouldNotBePlayed) {
    const ProcessResult result =
            runProbe({"--plugin", "missing.so", "explain", samplePath("mjpeg.ogm")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, testing::Not(testing::HasSubstr("nothing to explain")));
}

}  // namespace
}  // namespace ogmprobe::test::explain_output_test
