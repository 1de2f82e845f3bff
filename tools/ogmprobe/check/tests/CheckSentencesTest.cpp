// SPDX-License-Identifier: Apache-2.0
// The sentences of `check` about one track, each with the measured value and its limit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "FakeFile.h"

namespace ogmprobe::test::check_sentences_test {
namespace {

using nlohmann::json;

/** A reason in the JSON document: identifier, sentence, measured value and limit. */
struct Said {
    std::string id;
    std::string text;
    json value;
    json limit;

    bool operator==(const Said&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Said& said) {
    return out << "\n{\"" << said.id << "\", \"" << said.text << "\", " << said.value << ", "
               << said.limit << "}";
}

std::vector<Said> saidIn(const json& reasons) {
    std::vector<Said> all;
    for (const json& reason : reasons) {
        all.push_back({reason["id"].get<std::string>(), reason["text"].get<std::string>(),
                       reason["value"], reason["limit"]});
    }
    return all;
}

json checked(const json& file, const std::vector<std::string>& options = {}) {
    const FakePlugin plugin;
    std::vector<std::string> arguments = {"check", "--json", plugin.file(file)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return json::parse(FakePlugin::run(arguments).out).at("files").at(0);
}

json with(json track, const std::string& name, const json& value) {
    track["format"].erase(name);
    if (!value.is_null()) {
        track["format"][name] = value;
    }
    return track;
}

TEST(CheckSentences, NameWhatAFormatLacks) {
    const std::vector<std::pair<json, Said>> cases = {
            {with(fakeVideo(), "mime", nullptr),
             {"mime-missing", "the format has no MIME type", 0.0, 1.0}},
            {with(fakeVideo(), "width", nullptr),
             {"size-missing", "the format says no width, and no decoder is set up without", nullptr,
              1.0}},
            {with(fakeVideo(), "height", 0),
             {"size-missing", "the format says a height of 0, and no decoder is set up without",
              0.0, 1.0}},
            {with(fakeAudio(), "sample-rate", -5),
             {"sample-rate-missing",
              "the format says a sample rate of -5, and no decoder is set up without", -5.0, 1.0}},
            {with(fakeAudio(), "channel-count", nullptr),
             {"channels-missing",
              "the format says no channel count, and no decoder is set up without", nullptr, 1.0}},
            {with(fakeAudio(), "mime", "audio/mp4a-latm"),
             {"configuration-missing",
              "the format has no esds or csd-0, and no decoder of audio/mp4a-latm starts without",
              0.0, 1.0}},
            {with(fakeAudio(), "mime", "audio/opus"),
             {"configuration-missing",
              "the format has no csd-0, and no decoder of audio/opus starts without", 0.0, 1.0}},
    };
    for (const auto& [track, said] : cases) {
        const auto all = saidIn(checked(fakeFile({track}))["tracks"][0]["reasons"]);
        ASSERT_FALSE(all.empty()) << said;
        EXPECT_EQ(all.front(), said);
    }
}

TEST(CheckSentences, NameWhatTheWholeFileLacks) {
    EXPECT_EQ(saidIn(checked(fakeFile({}))["reasons"]),
              (std::vector<Said>{{"no-tracks", "The file has no track.", 0.0, nullptr}}));
    json file = fakeFile({fakeVideo()});
    file["container"].erase("durationUs");
    EXPECT_EQ(saidIn(checked(file)["reasons"]),
              (std::vector<Said>{{"duration-unknown",
                                  "The duration is unknown: the format of the file says none.", 0.0,
                                  1.0}}));
}

TEST(CheckSentences, NameHowFarSyncFramesAreApart) {
    json video = fakeVideo();
    for (json& buffer : video["buffers"]) {
        buffer.erase("sync");
    }
    EXPECT_EQ(saidIn(checked(fakeFile({video}))["tracks"][0]["reasons"]),
              (std::vector<Said>{
                      {"no-sync-frames",
                       "none of 3 pictures is a sync frame, so no seek finds a place to begin", 0.0,
                       1.0}}));
    video["buffers"] = json::array();
    for (int i = 0; i <= 40; ++i) {
        video["buffers"].push_back({{"time_us", i * 1000000}, {"sync", i % 16 == 0 ? 1 : 0}});
    }
    EXPECT_EQ(saidIn(checked(fakeFile({video}))["tracks"][0]["reasons"]),
              (std::vector<Said>{{"sync-frames-far-apart",
                                  "up to 16.000000 s pass without one of the 3 sync frames; "
                                  "15.000000 s are usual at most",
                                  16000000.0, 15000000.0}}));
    for (size_t i = 0; i < video["buffers"].size(); ++i) {
        video["buffers"][i]["sync"] = i % 15 == 0 ? 1 : 0;
    }
    EXPECT_EQ(saidIn(checked(fakeFile({video}))["tracks"][0]["reasons"]), (std::vector<Said>{}));
}

/** A list with one decoder of this type with this limit. */
std::string listWith(const TemporaryFolder& folder, const std::string& mime,
                     const std::string& limit) {
    return folder.write("list.xml", R"(<MediaCodecs><Decoders><MediaCodec name="c2.x" type=")" +
                                            mime + "\"><Limit " + limit +
                                            "/></MediaCodec></Decoders></MediaCodecs>");
}

/** The reasons for video of 64x48 at 30 pictures per second, or audio of 8000 Hz and 1 channel. */
std::vector<Said> saidAgainst(const json& track, const std::string& limit) {
    const TemporaryFolder folder;
    const std::string list = listWith(folder, track["format"]["mime"].get<std::string>(), limit);
    return saidIn(checked(fakeFile({track}), {"--codecs", list})["tracks"][0]["reasons"]);
}

TEST(CheckSentences, NameTheLimitThatAVideoDoesNotKeep) {
    const std::vector<std::pair<std::string, std::vector<Said>>> cases = {
            {R"(name="size" max="64x48")", {}},
            {R"(name="size" max="63x48")",
             {{"size-outside", "the pictures have 64x48; c2.x declares at most 63x48", 64.0,
               63.0}}},
            {R"(name="size" max="64x47")",
             {{"size-outside", "the pictures have 64x48; c2.x declares at most 64x47", 48.0,
               47.0}}},
            {R"(name="size" min="64x48")", {}},
            {R"(name="size" min="65x48")",
             {{"size-outside", "the pictures have 64x48; c2.x declares at least 65x48", 64.0,
               65.0}}},
            {R"(name="size" min="64x49")",
             {{"size-outside", "the pictures have 64x48; c2.x declares at least 64x49", 48.0,
               49.0}}},
            {R"(name="alignment" value="32x16")", {}},
            {R"(name="alignment" value="48x16")",
             {{"size-outside", "the pictures have 64x48; c2.x declares multiples of 48x16", 64.0,
               48.0}}},
            {R"(name="alignment" value="64x32")",
             {{"size-outside", "the pictures have 64x48; c2.x declares multiples of 64x32", 48.0,
               32.0}}},
            {R"(name="alignment" value="0x0")", {}},
            {R"(name="block-count" range="1-12")", {}},
            {R"(name="block-count" range="1-11")",
             {{"size-outside", "the pictures have 12 blocks (64x48); c2.x declares at most 11",
               12.0, 11.0}}},
            {R"(name="block-count" range="13-20")",
             {{"size-outside", "the pictures have 12 blocks (64x48); c2.x declares 13 to 20", 12.0,
               13.0}}},
            {R"(name="blocks-per-second" range="1-360")", {}},
            {R"(name="blocks-per-second" range="1-359")",
             {{"frame-rate-outside",
               "30 pictures a second of 64x48 are 360 blocks a second; c2.x declares at most 359",
               360.0, 359.0}}},
            {R"(name="blocks-per-second" range="361-400")", {}},
            {R"(name="frame-rate" range="1-30")", {}},
            {R"(name="frame-rate" range="1-29")",
             {{"frame-rate-outside", "30 pictures a second; c2.x declares at most 29", 30.0,
               29.0}}},
            {R"(name="frame-rate" range="31-60")",
             {{"frame-rate-outside", "30 pictures a second; c2.x declares 31 to 60", 30.0, 31.0}}},
            {R"(name="bitrate" range="1-10")", {}},
            {R"(name="bitrate" range="1000000-2000000")", {}},
    };
    const json video = with(fakeVideo(), "frame-rate", 30);
    for (const auto& [limit, said] : cases) {
        EXPECT_EQ(saidAgainst(video, limit), said) << limit;
    }
}

TEST(CheckSentences, NameTheLimitThatASoundDoesNotKeep) {
    const std::vector<std::pair<std::string, std::vector<Said>>> cases = {
            {R"(name="sample-rate" ranges="8000,11025-48000")", {}},
            {R"(name="sample-rate" ranges="4000,6000-7999")",
             {{"sample-rate-outside", "8000 samples a second; c2.x declares 4000, 6000 to 7999",
               8000.0, 7999.0}}},
            {R"(name="sample-rate" ranges="11025-48000")",
             {{"sample-rate-outside", "8000 samples a second; c2.x declares 11025 to 48000", 8000.0,
               11025.0}}},
            {R"(name="channel-count" max="1")", {}},
            {R"(name="channel-count" min="2" max="8")",
             {{"channels-outside", "1 channel; c2.x declares 2 to 8", 1.0, 2.0}}},
    };
    for (const auto& [limit, said] : cases) {
        EXPECT_EQ(saidAgainst(fakeAudio(), limit), said) << limit;
    }
}

}  // namespace
}  // namespace ogmprobe::test::check_sentences_test
