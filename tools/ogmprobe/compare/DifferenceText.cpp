// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "compare/Difference.h"
#include "text/Json.h"
#include "text/TimeArithmetic.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

std::string fieldText(const std::string& field) {
    static const std::map<std::string, std::string> kNames = {
            {"time_us", "time"}, {"duration_us", "duration"}, {"digest", "digest of the bytes"}};
    const auto name = kNames.find(field);
    if (name != kNames.end()) {
        return name->second;
    }
    if (field.starts_with(kFormatField)) {
        return visible(field.substr(kFormatField.size()));
    }
    std::string text = field;
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
}

bool isTime(const std::string& field) {
    return field == "time_us" || field == "duration_us";
}

/** Returns what a missing value means. */
std::string nothingText(DifferenceKind kind) {
    switch (kind) {
        case DifferenceKind::kOpening:
            return "taken";
        case DifferenceKind::kTrackEnd:
            return "end of stream";
        case DifferenceKind::kEnd:
            return "comes to its end";
        case DifferenceKind::kLog:
            return "no further line";
        case DifferenceKind::kRead:
            return "no further read";
        case DifferenceKind::kSeek:
            return "no further seek";
        case DifferenceKind::kContainer:
        case DifferenceKind::kTrack:
        case DifferenceKind::kPacket:
            break;
    }
    return "nothing";
}

std::string valueText(const Difference& difference, const ordered_json& value) {
    if (value.is_null()) {
        return nothingText(difference.kind);
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    if (value.is_number() && isTime(difference.field)) {
        return secondsText(value.get<int64_t>()) + " s";
    }
    if (value.is_string()) {
        const bool isSentence = difference.field.empty();
        return fmt::format("{0}{1}{0}", isSentence ? "\"" : "", visible(value.get<std::string>()));
    }
    return value.dump();
}

std::string differencePlace(const Difference& difference) {
    const uint64_t track = difference.track.value_or(0);
    const uint64_t number = difference.number.value_or(0);
    switch (difference.kind) {
        case DifferenceKind::kOpening:
            return "opening";
        case DifferenceKind::kContainer:
            return "the container";
        case DifferenceKind::kTrack:
            return fmt::format("track {}", track);
        case DifferenceKind::kPacket:
            return fmt::format("track {}, packet {}, at {} s", track, number,
                               secondsText(difference.timeUs));
        case DifferenceKind::kTrackEnd:
            return fmt::format("the end of track {}", track);
        case DifferenceKind::kEnd:
            return "the end of playing";
        case DifferenceKind::kRead:
            return fmt::format("read {}", number);
        case DifferenceKind::kSeek:
            return fmt::format("seek {}, to {} s", number, secondsText(difference.timeUs));
        case DifferenceKind::kLog:
            break;
    }
    return fmt::format("log line {}, in {}", number, difference.call);
}

/** Returns whether a track or a packet is missing on one side. */
bool isMissingOnOneSide(const Difference& difference) {
    return difference.field.empty() && (difference.kind == DifferenceKind::kTrack ||
                                        difference.kind == DifferenceKind::kPacket);
}

}  // namespace

std::string kindName(DifferenceKind kind) {
    switch (kind) {
        case DifferenceKind::kOpening:
            return "opening";
        case DifferenceKind::kContainer:
            return "container";
        case DifferenceKind::kTrack:
            return "track";
        case DifferenceKind::kPacket:
            return "packet";
        case DifferenceKind::kTrackEnd:
            return "track-end";
        case DifferenceKind::kEnd:
            return "end";
        case DifferenceKind::kRead:
            return "read";
        case DifferenceKind::kSeek:
            return "seek";
        case DifferenceKind::kLog:
            break;
    }
    return "log";
}

std::string toText(const Difference& difference) {
    const std::string place = differencePlace(difference);
    if (isMissingOnOneSide(difference)) {
        return fmt::format("{}: only in {}", place, difference.b.is_null() ? "A" : "B");
    }
    if (difference.shiftUs) {
        const int64_t shiftUs = *difference.shiftUs;
        return fmt::format(
                "track {}: B is {} s {} than A from packet {} on, and otherwise the same",
                difference.track.value_or(0),
                secondsText(shiftUs < 0 ? timeDifferenceUs(0, shiftUs) : shiftUs),
                shiftUs < 0 ? "earlier" : "later", difference.number.value_or(0));
    }
    const std::string field = difference.field.empty() ? "" : fieldText(difference.field) + " ";
    return fmt::format("{}: {}{} in A, {} in B", place, field, valueText(difference, difference.a),
                       valueText(difference, difference.b));
}

ordered_json toJson(const Difference& difference) {
    return {{"kind", kindName(difference.kind)},
            {"text", toText(difference)},
            {"track", orNull(difference.track)},
            {"number", orNull(difference.number)},
            {"time_us", orNull(difference.timeUs)},
            {"field",
             difference.field.empty() ? ordered_json(nullptr) : ordered_json(difference.field)},
            {"a", difference.a},
            {"b", difference.b},
            {"shift_us", orNull(difference.shiftUs)}};
}

}  // namespace ogmprobe
