// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "check/Judgement.h"
#include "check/Thresholds.h"
#include "text/NumberText.h"
#include "text/TimeText.h"

namespace ogmprobe::check {
namespace {

/** An entry without which a decoder of the type does not start. */
struct Configuration {
    std::string_view mime;
    std::string_view entry;
    /** An entry that can replace it; may be empty. */
    std::string_view instead;
};

constexpr std::array kConfigurations = {
        Configuration{"audio/mp4a-latm", "csd-0", "esds"},
        Configuration{"audio/vorbis", "csd-0", ""},
        Configuration{"audio/vorbis", "csd-1", ""},
        Configuration{"audio/opus", "csd-0", ""},
};

/** Each frame of AAC in ADTS has its own header. */
constexpr std::string_view kIsAdts = "is-adts";

bool hasEntry(const TrackDescription& track, std::string_view name) {
    return std::any_of(track.entries.begin(), track.entries.end(),
                       [name](const FormatEntry& entry) { return entry.name == name; });
}

void judgeConfiguration(const TrackDescription& track, std::vector<Reason>& reasons) {
    for (const Configuration& row : kConfigurations) {
        if (row.mime == track.mime && !hasEntry(track, row.entry) &&
            !(!row.instead.empty() && hasEntry(track, row.instead)) && !hasEntry(track, kIsAdts)) {
            const std::string names = row.instead.empty()
                                              ? std::string(row.entry)
                                              : fmt::format("{} or {}", row.instead, row.entry);
            reasons.push_back(reasonOf(
                    "configuration-missing",
                    fmt::format("the format has no {}, and no decoder of {} starts without", names,
                                track.mime),
                    0, 1));
            reasons.back().subject = track.codec.name;
        }
    }
}

void requirePositive(const std::optional<int32_t>& value, const char* id, const char* name,
                     std::vector<Reason>& reasons) {
    if (value.value_or(0) > 0) {
        return;
    }
    const std::string what =
            value ? fmt::format("says a {} of {}", name, *value) : fmt::format("says no {}", name);
    reasons.push_back(reasonOf(id, "the format " + what + ", and no decoder is set up without",
                               value ? std::optional<double>(*value) : std::nullopt, 1));
}

std::string briefLosses(const Ledger& ledger, bool usual) {
    std::string text;
    for (const Loss& loss : ledger.losses) {
        const LossText& reason = textOf(loss.reason);
        if (reason.usual == usual) {
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", loss.count, reason.brief);
        }
    }
    return text;
}

uint64_t countLosses(const Ledger& ledger, bool usual) {
    uint64_t count = 0;
    for (const Loss& loss : ledger.losses) {
        count += textOf(loss.reason).usual == usual ? loss.count : 0;
    }
    return count;
}

const char* idOfLoss(uint64_t lost, uint64_t inFile) {
    if (lost <= threshold::kUnnoticedLosses) {
        return "few-frames-lost";
    }
    const double share = static_cast<double>(lost) / static_cast<double>(inFile);
    return share > threshold::kBearableLoss ? "frames-mostly-lost" : "frames-lost";
}

/** "AC-3 at 44100 Hz": what files that lose frames often have in common. */
std::string subjectOf(const TrackDescription& track) {
    return track.kind == TrackKind::kAudio && track.sampleRate
                   ? fmt::format("{} at {} Hz", track.codec.name, *track.sampleRate)
                   : track.codec.name;
}

}  // namespace

void judgeFormat(const TrackDescription& track, std::vector<Reason>& reasons) {
    if (track.mime.empty()) {
        reasons.push_back(reasonOf("mime-missing", "the format has no MIME type", 0, 1));
    }
    if (track.kind == TrackKind::kVideo) {
        requirePositive(track.width, "size-missing", "width", reasons);
        requirePositive(track.height, "size-missing", "height", reasons);
    }
    if (track.kind == TrackKind::kAudio) {
        requirePositive(track.sampleRate, "sample-rate-missing", "sample rate", reasons);
        requirePositive(track.channelCount, "channels-missing", "channel count", reasons);
    }
    judgeConfiguration(track, reasons);
}

void judgeLosses(const Ledger& ledger, const TrackDescription& track,
                 std::vector<Reason>& reasons) {
    if (const uint64_t lost = countLosses(ledger, false); lost > 0) {
        reasons.push_back(reasonOf(
                idOfLoss(lost, ledger.inFile),
                fmt::format("{} of {} {} not returned: {}", lost,
                            counted(ledger.inFile, ledger.noun()), lost == 1 ? "is" : "are",
                            briefLosses(ledger, false)),
                static_cast<double>(lost), static_cast<double>(threshold::kUnnoticedLosses)));
        reasons.back().subject = subjectOf(track);
    }
    if (const uint64_t withheld = countLosses(ledger, true); withheld > 0) {
        reasons.push_back(
                reasonOf("end-withheld",
                         fmt::format("the last {} of {} {} not returned, as with every file: {}",
                                     withheld, counted(ledger.inFile, ledger.noun()),
                                     withheld == 1 ? "is" : "are", briefLosses(ledger, true)),
                         static_cast<double>(withheld)));
    }
}

void judgeTimes(const TrackDescription& track, const PlayedPackets& packets,
                std::vector<Reason>& reasons) {
    if (track.kind != TrackKind::kVideo || packets.longestStepUs() <= threshold::kStandstillUs) {
        return;
    }
    reasons.push_back(reasonOf(
            "pictures-share-times",
            fmt::format("{} of {} have the time of the one before, so that up to {} are shown at "
                        "once and none for up to {} s after",
                        packets.sharedTimes(), counted(packets.count(), "picture"),
                        packets.mostWithOneTime(), secondsText(packets.longestStepUs())),
            static_cast<double>(packets.longestStepUs()),
            static_cast<double>(threshold::kStandstillUs)));
}

void judgeSeeking(const TrackDescription& track, const PlayedPackets& packets,
                  std::vector<Reason>& reasons) {
    if (track.kind != TrackKind::kVideo || packets.count() == 0) {
        return;
    }
    if (packets.syncCount() == 0) {
        reasons.push_back(reasonOf(
                "no-sync-frames",
                fmt::format("none of {} is a sync frame, so no seek finds a place to begin",
                            counted(packets.count(), "picture")),
                0, 1));
        return;
    }
    const int64_t longestUs = packets.longestWithoutSyncUs();
    if (longestUs > threshold::kSyncDistanceUs) {
        reasons.push_back(reasonOf(
                "sync-frames-far-apart",
                fmt::format("up to {} s pass without one of the {}; {} s are usual at most",
                            secondsText(longestUs), counted(packets.syncCount(), "sync frame"),
                            secondsText(threshold::kSyncDistanceUs)),
                static_cast<double>(longestUs), static_cast<double>(threshold::kSyncDistanceUs)));
    }
}

}  // namespace ogmprobe::check
