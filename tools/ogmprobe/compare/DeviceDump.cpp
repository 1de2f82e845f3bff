// SPDX-License-Identifier: Apache-2.0
#include "compare/DeviceDump.h"

#include <fmt/core.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "codecs/Esds.h"
#include "files/InputFiles.h"
#include "text/Hex.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::json;

constexpr const char* kConfiguration = "csd-0";
/** Enough for a format with a codec's configuration. */
constexpr size_t kLongestLine = 1 << 20;
constexpr uint64_t kMaxTracks = 100'000;

/** Throws `json::exception` if the member exists and is not a number that fits. */
template <typename T>
std::optional<T> optionalIn(const json& line, const char* name) {
    const json& value = line.at(name);
    return value.is_null() ? std::nullopt : std::optional(value.get<T>());
}

uint64_t digestFrom(const std::string& text) {
    uint64_t digest = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, digest, 16);
    if (error != std::errc() || stop != end) {
        throw ProbeError(ExitCode::kFile, "a digest is no hexadecimal number");
    }
    return digest;
}

uint64_t trackFrom(const json& number) {
    const auto track = number.get<uint64_t>();
    if (!number.is_number_unsigned() || track >= kMaxTracks) {
        throw ProbeError(ExitCode::kFile, "a track's number is out of range");
    }
    return track;
}

/** Receives the lines one by one. */
class DumpReader {
  public:
    void take(const json& line) {
        const auto type = line.at("type").get<std::string>();
        if (type == "header") {
            takeHeader(line);
        } else if (!mHasHeader) {
            throw ProbeError(ExitCode::kFile, "it does not begin with a header line");
        } else if (type == "track") {
            takeTrack(line);
        } else if (type == "buffer") {
            takeBuffer(line);
        } else if (type == "end") {
            takeEnd(line);
        } else {
            throw ProbeError(ExitCode::kFile,
                             type == "seek" ? "it was made with seeks, which are not compared"
                                            : "a line has an unknown type");
        }
    }

    PlayedFile file() {
        if (!mHasHeader) {
            throw ProbeError(ExitCode::kFile, "no dump of a device: it is empty");
        }
        if (!mHasEnd) {
            mFile.failure = Failure{ExitCode::kDied, "the dump has no end line"};
        }
        if (!mFile.failure || !mFile.tracks.empty()) {
            mFile.opened.emplace();
            mFile.opened->trackCount = mFile.tracks.size();
        }
        return std::move(mFile);
    }

  private:
    void takeHeader(const json& line) {
        if (line.at("schema_version") != kSchemaVersion || line.at("digest") != "fnv1a64") {
            throw ProbeError(ExitCode::kFile, "it is of another version than this program's");
        }
        mHasHeader = true;
    }

    void takeTrack(const json& line) {
        const uint64_t index = trackFrom(line.at("index"));
        TrackDescription track;
        track.index = index;
        track.mime = line.at("mime").get<std::string>();
        track.durationUs = optionalIn<int64_t>(line, "duration_us");
        track.width = optionalIn<int32_t>(line, "width");
        track.height = optionalIn<int32_t>(line, "height");
        track.frameRate = optionalIn<int32_t>(line, "frame_rate");
        track.sampleRate = optionalIn<int32_t>(line, "sample_rate");
        track.channelCount = optionalIn<int32_t>(line, "channel_count");
        if (const auto bytes = optionalIn<std::string>(line, "csd_0")) {
            track.entries.push_back({kConfiguration, *bytes});
        }
        classify(track);
        mFile.tracks[index].description = std::move(track);
    }

    void takeBuffer(const json& line) {
        const auto track = mFile.tracks.find(trackFrom(line.at("track")));
        if (track == mFile.tracks.end()) {
            throw ProbeError(ExitCode::kFile, "a buffer is of a track that has no line");
        }
        ComparedPacket packet;
        packet.timeUs = line.at("time_us").get<int64_t>();
        packet.isSync = line.at("sync").get<bool>();
        packet.size = line.at("size").get<uint64_t>();
        packet.digest = digestFrom(line.at("digest").get<std::string>());
        track->second.packets.push_back(packet);
    }

    void takeEnd(const json& line) {
        mHasEnd = true;
        const auto code = line.at("exit_code").get<int>();
        if (code != 0) {
            const json& errors = line.at("errors");
            mFile.failure = Failure{static_cast<ExitCode>(code),
                                    errors.at(0).at("message").get<std::string>()};
        }
    }

    PlayedFile mFile;
    bool mHasHeader = false;
    bool mHasEnd = false;
};

std::optional<std::string> configurationOf(const TrackDescription& track) {
    const auto descriptor = track.esds ? parseEsDescriptor(*track.esds) : std::nullopt;
    const bool hasInfo = descriptor && descriptor->decoderConfig &&
                         descriptor->decoderConfig->decoderSpecificInfo;
    return hasInfo ? std::optional(hexText(*descriptor->decoderConfig->decoderSpecificInfo))
                   : std::nullopt;
}

/** Returns the next line without its end; nothing after the last one. */
std::optional<std::string_view> nextLine(std::istream& stream, std::vector<char>& room) {
    stream.getline(room.data(), static_cast<std::streamsize>(room.size()));
    if (stream.fail() && !stream.eof()) {
        throw ProbeError(ExitCode::kFile, "it is too long");
    }
    if (stream.fail()) {
        return std::nullopt;
    }
    const auto size = static_cast<size_t>(stream.gcount()) - (stream.eof() ? 0 : 1);
    return std::string_view(room.data(), size);
}

/** Returns false after the last line. */
bool takeLine(std::istream& stream, std::vector<char>& room, uint64_t number, DumpReader& reader) {
    try {
        const auto text = nextLine(stream, room);
        if (text) {
            reader.take(json::parse(*text));
        }
        return text.has_value();
    } catch (const json::exception&) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("no dump of a device: line {} is not from ogmdump", number));
    } catch (const ProbeError& error) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("no dump of a device: line {}: {}", number, error.what()));
    }
}

}  // namespace

PlayedFile readDeviceDump(const std::string& path) {
    std::ifstream stream(pathToOpen(path));
    if (!stream) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot open: {}", std::strerror(errno)));
    }
    DumpReader reader;
    std::vector<char> room(kLongestLine + 2);
    for (uint64_t number = 1; takeLine(stream, room, number, reader); ++number) {
    }
    return reader.file();
}

void reduceToPublicInterface(PlayedFile& file) {
    if (file.opened) {
        const uint64_t trackCount = file.opened->trackCount;
        file.opened.emplace();
        file.opened->trackCount = trackCount;
    }
    for (auto& [index, track] : file.tracks) {
        const auto configuration = configurationOf(track.description);
        track.description.entries.clear();
        if (configuration) {
            track.description.entries.push_back({kConfiguration, *configuration});
        }
        track.description.esds.reset();
        track.description.mpegAudioLayer.reset();
        track.failure.reset();
        for (ComparedPacket& packet : track.packets) {
            packet.entries = nullptr;
        }
    }
}

}  // namespace ogmprobe
