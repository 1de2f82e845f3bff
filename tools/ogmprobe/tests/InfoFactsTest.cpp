// SPDX-License-Identifier: Apache-2.0
// What `info` reports of the file itself, for generated files.
#include <OgmStreamHeaders.h>
#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "ExplainedFile.h"

namespace ogmprobe::test::info_facts_test {
namespace {

using namespace android::ogm::test;
using nlohmann::json;

/** Headers of three codecs in one packet, each with another width. */
const Bytes kHeadersOfAll = {0x00, 0x00, 0x01, 0x20, 0x08, 0xd4, 0x8d, 0x08, 0x00, 0xcd, 0x05,
                             0x84, 0x12, 0x14, 0x10, 0x3f, 0x00, 0x00, 0x01, 0xb3, 0x2d, 0x02,
                             0x40, 0x33, 0xff, 0xff, 0xe0, 0x18, 0x00, 0x00, 0x01, 0x67, 0x64,
                             0x00, 0x1f, 0xac, 0xd9, 0x40, 0x50, 0x05, 0xbb, 0x01, 0x10, 0x00,
                             0x00, 0x03, 0x00, 0x10, 0x00, 0x00, 0x03, 0x03, 0x20, 0xf1, 0x83,
                             0x19, 0x60, 0x00, 0x00, 0x01, 0x68};
constexpr int kWidthOfMpeg4 = 176;
constexpr int kWidthOfMpeg2 = 720;
constexpr int kWidthOfH264 = 1280;

/** A video stream and one of PCM; comments follow the headers. */
OgmFile fileOf(const std::string& fourcc, const std::vector<std::string>& comments = {}) {
    OgmFile file;
    VideoHeader video;
    video.subtype = fourcc;
    file.addHeader(1, video);
    file.addHeader(2, AudioHeader());
    if (!comments.empty()) {
        Bytes packet = {3, 'v', 'o', 'r', 'b', 'i', 's', 2, 0, 0, 0, 'm', 'e'};
        const auto addNumber = [&packet](size_t number) {
            packet.insert(packet.end(), {static_cast<uint8_t>(number), 0, 0, 0});
        };
        addNumber(comments.size());
        for (const std::string& comment : comments) {
            addNumber(comment.size());
            packet.insert(packet.end(), comment.begin(), comment.end());
        }
        packet.push_back(1);
        file.addData(1, 0, packet);
    }
    for (uint64_t i = 1; i <= 50; ++i) {
        file.addData(1, i, dataPacket(kSyncPacket, kHeadersOfAll));
        file.addData(2, 320 * i, audioPacket(Bytes(640, 0)));
    }
    return file;
}

/** The output for a file with these options. */
std::string answerTo(const OgmFile& file, const std::vector<std::string>& options = {}) {
    const TemporaryFolder folder;
    const Bytes& bytes = file.bytes();
    std::vector<std::string> arguments = {
            "info", folder.write("a.ogm", std::string(bytes.begin(), bytes.end()))};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return runProbe(arguments).out;
}

json factsOf(const OgmFile& file) {
    const json facts = json::parse(answerTo(file, {"--json"}))["files"][0]["from_file"];
    EXPECT_TRUE(facts.is_object());
    return facts;
}

TEST(InfoFacts, AreReadWithTheCodecThatTheFourccBelongsTo) {
    const std::map<std::string, std::optional<int>> widths = {
            {"H264", kWidthOfH264},  {"X264", kWidthOfH264},  {"x264", kWidthOfH264},
            {"AVC1", kWidthOfH264},  {"DAVC", kWidthOfH264},  {"VSSH", kWidthOfH264},
            {"MPG2", kWidthOfMpeg2}, {"mpg1", kWidthOfMpeg2}, {"MPEG", kWidthOfMpeg2},
            {"MP2V", kWidthOfMpeg2}, {"MP1V", kWidthOfMpeg2}, {"MJPG", std::nullopt},
            {"WMV3", std::nullopt},  {"VP80", std::nullopt},  {"DIV3", std::nullopt},
            {"DIV4", std::nullopt},  {"DIV5", std::nullopt},  {"DIV6", std::nullopt},
            {"MP43", std::nullopt},  {"MP42", std::nullopt},  {"MP41", std::nullopt},
            {"COL1", std::nullopt},  {"XVID", kWidthOfMpeg4}, {"DX50", kWidthOfMpeg4},
            {"divx", kWidthOfMpeg4}, {"FMP4", kWidthOfMpeg4}, {"MP4V", kWidthOfMpeg4},
    };
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {"info", "--json"};
    for (const auto& [fourcc, width] : widths) {
        const Bytes bytes = fileOf(fourcc).bytes();
        arguments.push_back(folder.write(fourcc + ".ogm", std::string(bytes.begin(), bytes.end())));
    }
    const json document = json::parse(runProbe(arguments).out);
    size_t file = 0;
    for (const auto& [fourcc, width] : widths) {
        const json& stream = document["files"][file++]["from_file"]["streams"][0];
        EXPECT_EQ(stream["tag"], fourcc);
        EXPECT_EQ(stream["video"].is_null() ? json() : stream["video"]["width"],
                  width ? json(*width) : json())
                << fourcc;
    }
}

TEST(InfoFacts, HaveChaptersAndOtherComments) {
    const OgmFile file =
            fileOf("H264", {"TITLE=a film", "CHAPTER02=00:01:00.500", "CHAPTER02NAME=two",
                            "CHAPTER01=00:00:00.000", "CHAPTER01NAME=one", "odd"});
    const json facts = factsOf(file);
    EXPECT_EQ(facts["chapters"],
              json({{{"time_us", 0}, {"name", "one"}}, {{"time_us", 60500000}, {"name", "two"}}}));
    EXPECT_EQ(facts["streams"][0]["comments"]["vendor"], "me");
    const std::string text = answerTo(file);
    EXPECT_THAT(text, testing::HasSubstr("    Stream 1 written by: me\n"
                                         "    Stream 1 TITLE: a film\n"));
    EXPECT_THAT(text, testing::HasSubstr("    Chapter at 0.000000: one\n"
                                         "    Chapter at 60.500000: two\n"));
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("CHAPTER")));
}

TEST(InfoFacts, CountPacketsAndBytesAndTheirRates) {
    const json facts = factsOf(fileOf("H264"));
    const json& video = facts["streams"][0];
    EXPECT_EQ(video["packets"], 50);
    EXPECT_EQ(video["bytes"], 50 * (1 + kHeadersOfAll.size()));
    EXPECT_EQ(video["duration_us"], 2000000);
    EXPECT_EQ(video["frame_rate"], 25.0);
    // Of 62 bytes in each of 50 packets in 2 s; the first second has pages 0 to 24.
    EXPECT_EQ(video["average_bitrate"], 62 * 50 * 8 / 2);
    EXPECT_EQ(video["largest_bitrate"], 62 * 25 * 8);
    const json& audio = facts["streams"][1];
    EXPECT_EQ(audio["bits_per_sample"], 16);
    EXPECT_EQ(audio["frame_rate"], nullptr);
    EXPECT_EQ(facts["duration_us"], 2000000);
}

TEST(InfoFacts, SayWhyAStreamHasNoTrack) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, AudioHeader());
    file.addHeader(3, vorbisIdentificationHeader());
    file.addHeader(4, theoraIdentificationHeader());
    file.addHeader(5, textHeader());
    VideoHeader unknownVideo;
    unknownVideo.subtype = "ABCD";
    file.addHeader(6, unknownVideo);
    AudioHeader unknownAudio;
    unknownAudio.subtype = "7777";
    file.addHeader(7, unknownAudio);
    file.addHeader(8, Bytes{1, 'o', 'd', 'd'});
    for (uint64_t i = 1; i <= 5; ++i) {
        for (uint32_t serial = 1; serial <= 8; ++serial) {
            file.addData(serial, i, dataPacket(kSyncPacket, {1, 2, 3, 4, 5}));
        }
    }
    file.addData(9, 1, dataPacket(kSyncPacket, {1}));
    const std::vector<json> reasons = {nullptr,
                                       nullptr,
                                       "Vorbis: ignored",
                                       "Theora: ignored",
                                       "text",
                                       "unknown codec ABCD",
                                       "unknown codec 7777",
                                       "unknown header",
                                       "no header page"};
    const json facts = factsOf(file);
    ASSERT_EQ(facts["streams"].size(), reasons.size());
    for (size_t i = 0; i < reasons.size(); ++i) {
        EXPECT_EQ(facts["streams"][i]["why_no_track"], reasons[i]) << i;
    }
    EXPECT_THAT(answerTo(file),
                testing::HasSubstr("\n  7 streams have no track: ogmprobe explain\n"));
}

}  // namespace
}  // namespace ogmprobe::test::info_facts_test
