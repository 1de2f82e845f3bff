// SPDX-License-Identifier: Apache-2.0
#include "info/FactsText.h"

#include <fmt/core.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

std::string orDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string rateOrDash(const std::optional<double>& rate) {
    return rate ? rateText(*rate) : "-";
}

std::string streamTable(const FileFacts& facts, bool color) {
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Serial", kRight},
                     {"Track", kRight},
                     {"Kind"},
                     {"Tag"},
                     {"Bits", kRight},
                     {"Packets", kRight},
                     {"Bytes", kRight},
                     {"Share", kRight},
                     {"Bitrate", kRight},
                     {"At most", kRight},
                     {"Until", kRight}});
    for (const StreamFacts& stream : facts.streams) {
        table.add({fmt::format("{}", stream.serial),
                   stream.track ? fmt::format("{}", *stream.track) : "-", stream.kind,
                   orDash(stream.codec),
                   stream.bitsPerSample ? fmt::format("{}", *stream.bitsPerSample) : "-",
                   fmt::format("{}", stream.packets), fmt::format("{}", stream.bytes),
                   fmt::format("{:.0f} %", stream.percentOfFile), rateOrDash(stream.averageBitrate),
                   rateOrDash(stream.largestBitrate), durationText(stream.durationUs)});
    }
    return table.text("    ", color);
}

std::string videoText(const StreamFacts& stream) {
    const std::string rate = stream.frameRate ? fmt::format("{:.5g} fps", *stream.frameRate) : "";
    const std::string facts = stream.video ? videoFactsText(*stream.video) : "";
    return rate + (rate.empty() || facts.empty() ? "" : ", ") + facts;
}

std::string streamLines(const StreamFacts& stream) {
    const std::string indent = fmt::format("    Stream {} ", stream.serial);
    std::string text;
    if (stream.video || stream.frameRate) {
        text += fmt::format("{}video: {}\n", indent, videoText(stream));
    }
    if (stream.audio) {
        const std::string details = audioDetailsText(stream.audioDetails);
        text += fmt::format("{}audio: {}{}{}\n", indent, audioFactsText(*stream.audio),
                            details.empty() ? "" : ", ", details);
    }
    if (!stream.comments.vendor.empty()) {
        text += fmt::format("{}written by: {}\n", indent, visible(stream.comments.vendor));
    }
    for (const Comment& comment : stream.comments.entries) {
        if (!isChapter(comment)) {
            text += fmt::format("{}{}: {}\n", indent, visible(comment.name),
                                visible(comment.value));
        }
    }
    return text;
}

ordered_json rounded(const std::optional<double>& rate) {
    return rate ? ordered_json(std::llround(*rate)) : ordered_json(nullptr);
}

ordered_json textOrNull(const std::string& text) {
    return text.empty() ? ordered_json(nullptr) : ordered_json(text);
}

ordered_json toJson(const VideoFacts& video) {
    return {{"profile", textOrNull(video.profile)},
            {"level", textOrNull(video.level)},
            {"width", video.width},
            {"height", video.height},
            {"aspect", textOrNull(video.aspect)},
            {"interlaced", orNull(video.interlaced)},
            {"chroma", textOrNull(video.chroma)},
            {"quantizer", textOrNull(video.quantizer)},
            {"quarter_pel", orNull(video.quarterPel)},
            {"warp_points", orNull(video.warpPoints)},
            {"b_pictures", orNull(video.bPictures)},
            {"packed", video.packed},
            {"encoder", textOrNull(video.encoder)}};
}

ordered_json toJson(const AudioFacts& audio, const AudioDetails& details) {
    return {{"coding", audio.coding},
            {"sample_rate", audio.sampleRate},
            {"channels", audio.channels},
            {"bitrate", rounded(audio.bitrate)},
            {"constant_bitrate", orNull(audio.constantBitrate)},
            {"layout", textOrNull(details.layout)},
            {"service", textOrNull(details.service)},
            {"dialogue_db", orNull(details.dialogueDb)},
            {"encoder", textOrNull(details.encoder)}};
}

ordered_json toJson(const Comments& comments) {
    auto entries = ordered_json::array();
    for (const Comment& comment : comments.entries) {
        entries.push_back({{"name", comment.name}, {"value", comment.value}});
    }
    return {{"vendor", comments.vendor}, {"entries", std::move(entries)}};
}

ordered_json toJson(const StreamFacts& stream) {
    return {{"serial", stream.serial},
            {"track", orNull(stream.track)},
            {"why_no_track", textOrNull(stream.whyNoTrack)},
            {"kind", stream.kind},
            {"tag", textOrNull(stream.codec)},
            {"bits_per_sample", orNull(stream.bitsPerSample)},
            {"packets", stream.packets},
            {"bytes", stream.bytes},
            {"average_bitrate", rounded(stream.averageBitrate)},
            {"largest_bitrate", rounded(stream.largestBitrate)},
            {"duration_us", orNull(stream.durationUs)},
            {"frame_rate", orNull(stream.frameRate)},
            {"audio",
             stream.audio ? toJson(*stream.audio, stream.audioDetails) : ordered_json(nullptr)},
            {"video", stream.video ? toJson(*stream.video) : ordered_json(nullptr)},
            {"comments", toJson(stream.comments)}};
}

}  // namespace

void addStreamsWithoutTrack(const FileFacts& facts, TextTable& table) {
    for (const StreamFacts& stream : facts.streams) {
        if (!stream.whyNoTrack.empty()) {
            table.addDimmed({"-", stream.kind, orDash(stream.codec), "-", "-",
                             "no track: " + stream.whyNoTrack});
        }
    }
}

std::string factsText(const FileFacts& facts, bool color) {
    if (facts.streams.empty()) {
        return "";
    }
    std::string text =
            fmt::format("  From the file itself{}:\n",
                        facts.bitrate ? ", " + rateText(*facts.bitrate) + " in all" : "") +
            streamTable(facts, color);
    for (const StreamFacts& stream : facts.streams) {
        text += streamLines(stream);
    }
    for (const Chapter& chapter : facts.chapters) {
        text += fmt::format("    Chapter at {}: {}\n", secondsText(chapter.timeUs),
                            visible(chapter.name));
    }
    if (const uint64_t count = facts.streamsWithoutTrack(); count > 0) {
        text += fmt::format("  {} no track: ogmprobe explain\n",
                            count == 1 ? "1 stream has" : fmt::format("{} streams have", count));
    }
    return text;
}

ordered_json toJson(const FileFacts& facts) {
    auto streams = ordered_json::array();
    for (const StreamFacts& stream : facts.streams) {
        streams.push_back(toJson(stream));
    }
    auto chapters = ordered_json::array();
    for (const Chapter& chapter : facts.chapters) {
        chapters.push_back({{"time_us", chapter.timeUs}, {"name", chapter.name}});
    }
    return {{"duration_us", orNull(facts.durationUs)},
            {"bitrate", rounded(facts.bitrate)},
            {"streams", std::move(streams)},
            {"chapters", std::move(chapters)}};
}

}  // namespace ogmprobe
