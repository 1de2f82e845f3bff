// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "ExitCode.h"
#include "check/Reason.h"

namespace ogmprobe::check {

/** A track, or a stream without a track. */
struct CheckedTrack {
    std::optional<uint64_t> index;
    std::optional<uint32_t> serial;
    /** "video", "audio", "other"; for a stream without a track also the kind in its header. */
    std::string kind;
    /** Name for users. */
    std::string codec;
    std::string mime;
    std::string format;
    /** The decoder that suits it best; empty: there is none. */
    std::string decoder;
    /** Packets, or frames of re-framed audio; nothing if the file does not show it. */
    std::optional<uint64_t> inFile;
    uint64_t returned = 0;
    std::vector<Reason> reasons = {};

    Verdict verdict() const;
    bool operator==(const CheckedTrack&) const = default;
};

/** Whether a device will play a file, and why not. */
struct CheckedFile {
    std::string path;
    uint64_t sizeBytes = 0;
    /** From the plug-in; 0: unknown; nothing: not opened. */
    std::optional<int64_t> durationUs = {};
    std::vector<CheckedTrack> tracks = {};
    /** Reasons that concern the whole file. */
    std::vector<Reason> reasons = {};
    /** Why the check itself failed, with its exit code. */
    struct Failure {
        ExitCode code = ExitCode::kFile;
        std::string message;

        bool operator==(const Failure&) const = default;
    };
    std::vector<Failure> failures = {};

    Verdict verdict() const;
    /** That of the verdict, or, if the check failed, of the failure. */
    ExitCode exitCode() const;
    bool operator==(const CheckedFile&) const = default;
};

nlohmann::ordered_json toJson(const CheckedFile& file);
/** Throws the exceptions of `nlohmann::json` if the JSON is not that of a checked file. */
CheckedFile checkedFileOf(const nlohmann::ordered_json& json);

}  // namespace ogmprobe::check
