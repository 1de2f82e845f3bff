// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "PluginTest.h"
#include "Samples.h"

namespace android::ogm::test::golden_test {
namespace {

constexpr const char* kInt32Keys[] = {"width",       "height",        "frame-rate",
                                      "sample-rate", "channel-count", "mpeg-aud-layer"};
constexpr const char* kInt64Keys[] = {"durationUs", "thumbnail-time"};

Bytes contentsOf(const std::string& path) {
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    return fileBytes(path);
}

std::string hexadecimal(const Bytes& bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        text += formatted("%02x", byte);
    }
    return text;
}

void dumpFormat(std::ostream& out, const Format& format) {
    out << " mime=" << format.string("mime").value_or("none");
    for (const char* key : kInt32Keys) {
        if (const auto value = format.int32(key)) {
            out << ' ' << key << '=' << *value;
        }
    }
    for (const char* key : kInt64Keys) {
        if (const auto value = format.int64(key)) {
            out << ' ' << key << '=' << *value;
        }
    }
    if (const auto bytes = format.buffer("esds")) {
        out << " esds=" << hexadecimal(*bytes);
    }
    out << '\n';
}

void dumpBuffer(std::ostream& out, size_t track, const ReadResult& result) {
    out << "buffer track=" << track;
    out << " timeUs=" << (result.timeUs ? std::to_string(*result.timeUs) : "none");
    out << " sync=" << (result.isSyncFrame ? std::to_string(*result.isSyncFrame) : "none");
    out << " size=" << result.bytes.size() << " digest=" << digestOf(result.bytes) << '\n';
}

/** A track and its next buffer. */
struct Playing {
    std::unique_ptr<Track> track;
    ReadResult next;
};

/**
 * Writes the buffers of all tracks in the order of their times, as a player needs them; if times
 * are equal, those of the first track first.
 */
void dumpBuffers(std::ostream& out, std::vector<Playing>& tracks) {
    for (Playing& playing : tracks) {
        playing.next = playing.track->read();
    }
    while (true) {
        std::optional<size_t> earliest;
        for (size_t i = 0; i < tracks.size(); ++i) {
            const ReadResult& next = tracks[i].next;
            if (next.hasBuffer && (!earliest || next.timeUs < tracks[*earliest].next.timeUs)) {
                earliest = i;
            }
        }
        if (!earliest) {
            return;
        }
        Playing& playing = tracks[*earliest];
        dumpBuffer(out, *earliest, playing.next);
        playing.next = playing.track->read();
    }
}

std::string dumpOf(const std::string& path) {
    MemorySource source(contentsOf(path));
    const Extractor extractor = openFile(source);
    std::ostringstream out;
    out << "file";
    dumpFormat(out, extractor.fileFormat());
    std::vector<Playing> tracks;
    for (size_t i = 0; i < extractor.countTracks(); ++i) {
        tracks.push_back({extractor.startedTrack(i), {}});
        out << "track " << i;
        dumpFormat(out, extractor.trackFormat(i));
    }
    dumpBuffers(out, tracks);
    for (size_t i = 0; i < tracks.size(); ++i) {
        out << "end track=" << i << " status=" << tracks[i].next.status << '\n';
    }
    return out.str();
}

/** The first line that differs between two texts, to keep the report short. */
std::string firstDifference(const std::string& actual, const std::string& expected) {
    std::istringstream actualLines(actual);
    std::istringstream expectedLines(expected);
    std::string actualLine;
    std::string expectedLine;
    for (int number = 1;; ++number) {
        const bool more = static_cast<bool>(std::getline(actualLines, actualLine));
        const bool moreExpected = static_cast<bool>(std::getline(expectedLines, expectedLine));
        if (!more && !moreExpected) {
            return "the lines are equal";
        }
        if (more != moreExpected || actualLine != expectedLine) {
            return formatted("line %d is\n  %s\nand should be\n  %s", number,
                             more ? actualLine.c_str() : "missing",
                             moreExpected ? expectedLine.c_str() : "missing");
        }
    }
}

bool updating() {
    const char* value = getenv("OGM_UPDATE_GOLDEN");
    return value != nullptr && std::string(value) == "1";
}

class GoldenTest : public PluginTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(GoldenTest, ASampleGivesTheFormatsAndBuffersOfItsDump) {
    const std::string data = testData();
    const std::string golden = data + "/golden/" + GetParam() + ".golden";
    const std::string dump = dumpOf(data + "/samples/" + GetParam() + ".ogm");
    if (updating()) {
        std::ofstream stream(golden, std::ios::binary);
        stream << dump;
        ASSERT_TRUE(stream.flush()) << golden;
        return;
    }
    const Bytes expected = contentsOf(golden);
    const std::string text(expected.begin(), expected.end());
    EXPECT_TRUE(dump == text) << firstDifference(dump, text);
}

INSTANTIATE_TEST_SUITE_P(Samples, GoldenTest,
                         ::testing::Values("divx3_pcm16", "h264_mp3vbr", "long_mpeg4_mp3", "mjpeg",
                                           "mpeg2_ac3", "mpeg4_2997_ac3", "mpeg4_b_mp3",
                                           "mpeg4_mp3_ac3", "mpeg4_pcm8", "mpeg4_vorbis",
                                           "xvid_refused_mp3"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace android::ogm::test::golden_test
