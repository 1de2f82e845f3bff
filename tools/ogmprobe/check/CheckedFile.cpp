// SPDX-License-Identifier: Apache-2.0
#include "check/CheckedFile.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "text/Json.h"

namespace ogmprobe::check {
namespace {

using nlohmann::ordered_json;

constexpr std::array kVerdicts = {Verdict::kPlays, Verdict::kPlaysWithFaults, Verdict::kDoesNotPlay,
                                  Verdict::kUnknown};

template <typename T>
std::optional<T> valueOrNothing(const ordered_json& json) {
    return json.is_null() ? std::nullopt : std::optional(json.get<T>());
}

Verdict verdictOf(const std::string& name) {
    for (const Verdict verdict : kVerdicts) {
        if (nameOf(verdict) == name) {
            return verdict;
        }
    }
    throw std::invalid_argument("no verdict is called " + name);
}

ordered_json toJson(const Reason& reason) {
    return {{"id", reason.id},
            {"verdict", nameOf(reason.verdict)},
            {"text", reason.text},
            {"value", orNull(reason.value)},
            {"limit", orNull(reason.limit)},
            {"subject", reason.subject}};
}

Reason reasonFrom(const ordered_json& json) {
    return {json.at("id").get<std::string>(),
            verdictOf(json.at("verdict").get<std::string>()),
            json.at("text").get<std::string>(),
            valueOrNothing<double>(json.at("value")),
            valueOrNothing<double>(json.at("limit")),
            json.at("subject").get<std::string>()};
}

ordered_json toJson(const std::vector<Reason>& reasons) {
    auto list = ordered_json::array();
    for (const Reason& reason : reasons) {
        list.push_back(toJson(reason));
    }
    return list;
}

std::vector<Reason> reasonsFrom(const ordered_json& json) {
    std::vector<Reason> reasons;
    for (const auto& entry : json) {
        reasons.push_back(reasonFrom(entry));
    }
    return reasons;
}

ordered_json toJson(const CheckedTrack& track) {
    return {{"track", orNull(track.index)},
            {"serial", orNull(track.serial)},
            {"verdict", nameOf(track.verdict())},
            {"kind", track.kind},
            {"codec", track.codec},
            {"mime", track.mime},
            {"format", track.format},
            {"decoder",
             track.decoder.empty() ? ordered_json(nullptr) : ordered_json(track.decoder)},
            {"in_file", orNull(track.inFile)},
            {"handed_out", track.returned},
            {"reasons", toJson(track.reasons)}};
}

CheckedTrack trackFrom(const ordered_json& json) {
    CheckedTrack track;
    track.index = valueOrNothing<uint64_t>(json.at("track"));
    track.serial = valueOrNothing<uint32_t>(json.at("serial"));
    json.at("kind").get_to(track.kind);
    json.at("codec").get_to(track.codec);
    json.at("mime").get_to(track.mime);
    json.at("format").get_to(track.format);
    track.decoder = valueOrNothing<std::string>(json.at("decoder")).value_or("");
    track.inFile = valueOrNothing<uint64_t>(json.at("in_file"));
    json.at("handed_out").get_to(track.returned);
    track.reasons = reasonsFrom(json.at("reasons"));
    return track;
}

ordered_json toJson(const std::vector<CheckedFile::Failure>& failures) {
    auto list = ordered_json::array();
    for (const auto& failure : failures) {
        list.push_back(
                {{"exit_code", static_cast<int>(failure.code)}, {"message", failure.message}});
    }
    return list;
}

CheckedFile::Failure failureFrom(const ordered_json& json) {
    const int code =
            std::clamp(json.at("exit_code").get<int>(), 0, static_cast<int>(lastOf(ExitCode{})));
    return {static_cast<ExitCode>(code), json.at("message").get<std::string>()};
}

}  // namespace

Verdict CheckedTrack::verdict() const {
    return worstOf(reasons);
}

Verdict CheckedFile::verdict() const {
    Verdict worst = worstOf(reasons);
    for (const CheckedTrack& track : tracks) {
        worst = std::max(worst, track.verdict());
    }
    return worst;
}

ExitCode CheckedFile::exitCode() const {
    switch (verdict()) {
        case Verdict::kPlays:
            return ExitCode::kDone;
        case Verdict::kPlaysWithFaults:
            return ExitCode::kFaults;
        case Verdict::kDoesNotPlay:
            return ExitCode::kDoesNotPlay;
        case Verdict::kUnknown:
            break;
    }
    return failures.empty() ? ExitCode::kFile : failures.front().code;
}

ordered_json toJson(const CheckedFile& file) {
    auto tracks = ordered_json::array();
    for (const CheckedTrack& track : file.tracks) {
        tracks.push_back(toJson(track));
    }
    return {{"path", file.path},
            {"exit_code", static_cast<int>(file.exitCode())},
            {"verdict", nameOf(file.verdict())},
            {"size", file.sizeBytes},
            {"duration_us", orNull(file.durationUs)},
            {"reasons", toJson(file.reasons)},
            {"tracks", std::move(tracks)},
            {"errors", toJson(file.failures)}};
}

CheckedFile checkedFileOf(const ordered_json& json) {
    CheckedFile file;
    json.at("path").get_to(file.path);
    json.at("size").get_to(file.sizeBytes);
    file.durationUs = valueOrNothing<int64_t>(json.at("duration_us"));
    file.reasons = reasonsFrom(json.at("reasons"));
    for (const auto& track : json.at("tracks")) {
        file.tracks.push_back(trackFrom(track));
    }
    for (const auto& failure : json.at("errors")) {
        file.failures.push_back(failureFrom(failure));
    }
    return file;
}

}  // namespace ogmprobe::check
