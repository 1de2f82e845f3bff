// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ogmprobe::check {

/** Whether a device plays a track; larger is worse. */
enum class Verdict {
    kPlays,
    kPlaysWithFaults,
    kDoesNotPlay,
    /** The check failed. */
    kUnknown,
};

constexpr Verdict lastOf(Verdict) {
    return Verdict::kUnknown;
}

/** "plays", "plays with faults", "does not play", "unknown". */
std::string_view nameOf(Verdict verdict);

/** The verdict and the title of a kind of reason. */
struct ReasonKind {
    std::string_view id;
    /** `kPlays`: the reason is only a note. */
    Verdict verdict;
    std::string_view title;
};

/** Returns null for an unknown name. */
const ReasonKind* reasonKind(std::string_view id);

/** Why a verdict is not better, or a note on a track that plays. */
struct Reason {
    /** Identifier for programs; never changes. */
    std::string id;
    Verdict verdict = Verdict::kPlays;
    /** One sentence, with the number that it is based on. */
    std::string text;
    /** That number, and the limit that it was compared with, if there are any. */
    std::optional<double> value = {};
    std::optional<double> limit = {};
    /** Distinguishes reasons with the same name when files are counted: "audio/ac3". */
    std::string subject = {};

    bool operator==(const Reason&) const = default;
};

/** Returns a reason of the table's kind with this name. */
Reason reasonOf(std::string_view id, std::string text, std::optional<double> value = {},
                std::optional<double> limit = {});

/** Returns the worst verdict of the reasons. */
Verdict worstOf(const std::vector<Reason>& reasons);

}  // namespace ogmprobe::check
