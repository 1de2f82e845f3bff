// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ogmprobe::check {

/** What becomes of a track on a device; the larger the worse. */
enum class Verdict {
    kPlays,
    kPlaysWithFaults,
    kDoesNotPlay,
    /** Nobody knows. */
    kUnknown,
};

constexpr Verdict lastOf(Verdict) {
    return Verdict::kUnknown;
}

/** "plays", "plays with faults", "does not play", "unknown". */
std::string_view nameOf(Verdict verdict);

/** What a reason of that name does to a verdict, and what it is called where files are counted. */
struct ReasonKind {
    std::string_view id;
    /** `kPlays`: it is only told of. */
    Verdict verdict;
    std::string_view title;
};

/** Nothing for a name that stands for no reason. */
const ReasonKind* reasonKind(std::string_view id);

/** Why a verdict is not better, or what is worth to be known of a track that plays. */
struct Reason {
    /** For programs; never changes. */
    std::string id;
    Verdict verdict = Verdict::kPlays;
    /** One sentence, with the number that it rests on. */
    std::string text;
    /** That number, and the one that it was held against, where there are such. */
    std::optional<double> value = {};
    std::optional<double> limit = {};
    /** What sets it apart from others of its name where files are counted: "audio/ac3". */
    std::string subject = {};

    bool operator==(const Reason&) const = default;
};

/** A reason that the table knows. */
Reason reasonOf(std::string_view id, std::string text, std::optional<double> value = {},
                std::optional<double> limit = {});

/** The worst of them. */
Verdict worstOf(const std::vector<Reason>& reasons);

}  // namespace ogmprobe::check
