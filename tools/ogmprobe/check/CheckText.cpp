// SPDX-License-Identifier: Apache-2.0
#include "check/CheckText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "console/Console.h"
#include "text/Csv.h"
#include "text/VisibleText.h"

namespace ogmprobe::check {
namespace {

constexpr std::array<std::string_view, 4> kSeverities = {"note", "fault", "fatal", "error"};

std::string reasonLine(const Reason& reason) {
    return fmt::format("    {}: {} ({})\n", severityOf(reason), visible(reason.text), reason.id);
}

std::string reasonLines(const std::vector<Reason>& reasons) {
    std::vector<Reason> sorted = reasons;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Reason& a, const Reason& b) { return a.verdict > b.verdict; });
    std::string text;
    for (const Reason& reason : sorted) {
        text += reasonLine(reason);
    }
    return text;
}

void addNames(const std::vector<Reason>& reasons, Verdict verdict,
              std::vector<std::string>& names) {
    for (const Reason& reason : reasons) {
        if (reason.verdict == verdict &&
            std::find(names.begin(), names.end(), reason.id) == names.end()) {
            names.push_back(reason.id);
        }
    }
}

std::string cellText(const std::optional<double>& number) {
    return number ? fmt::format("{:.10g}", *number) : "";
}

std::vector<std::string> csvCells(const CheckedFile& file, const CheckedTrack& track) {
    return {file.path,
            std::string(nameOf(file.verdict())),
            track.index ? fmt::format("{}", *track.index) : "",
            track.kind,
            track.mime,
            track.format,
            track.decoder};
}

std::string csvLines(const std::vector<std::string>& cells, const std::vector<Reason>& reasons) {
    std::string text;
    for (const Reason& reason : reasons) {
        std::vector<std::string> line = cells;
        line.insert(line.end(), {std::string(severityOf(reason)), reason.id, cellText(reason.value),
                                 cellText(reason.limit), reason.text});
        text += csvLine(line);
    }
    if (reasons.empty()) {
        std::vector<std::string> line = cells;
        line.resize(cells.size() + 5);
        text += csvLine(line);
    }
    return text;
}

}  // namespace

std::string_view severityOf(const Reason& reason) {
    return kSeverities[static_cast<size_t>(reason.verdict)];
}

std::string titleOf(const CheckedTrack& track) {
    const std::string which =
            track.index ? fmt::format("track {}", *track.index)
                        : fmt::format("stream {}, no track", track.serial.value_or(0));
    std::string text = fmt::format("{}, {}", which, track.kind);
    for (const std::string& part : {track.codec, track.format}) {
        text += part.empty() || part == "-" ? "" : ", " + visible(part);
    }
    return text;
}

std::vector<std::string> namesOfReasons(const CheckedFile& file) {
    std::vector<std::string> names;
    for (const Verdict verdict :
         {Verdict::kUnknown, Verdict::kDoesNotPlay, Verdict::kPlaysWithFaults}) {
        addNames(file.reasons, verdict, names);
        for (const CheckedTrack& track : file.tracks) {
            addNames(track.reasons, verdict, names);
        }
    }
    return names;
}

std::string fullText(const CheckedFile& file, const std::string& decoders, bool color) {
    std::string text =
            fmt::format("{}: {}\n  decoders: {}\n", emphasised(visible(file.path), color),
                        emphasised(nameOf(file.verdict()), color), visible(decoders));
    if (!file.reasons.empty()) {
        text += fmt::format("  the whole file: {}\n", nameOf(worstOf(file.reasons)));
        text += reasonLines(file.reasons);
    }
    for (const CheckedTrack& track : file.tracks) {
        text += fmt::format("  {}: {}{}\n", titleOf(track), nameOf(track.verdict()),
                            track.decoder.empty() ? "" : " (" + visible(track.decoder) + ")");
        text += reasonLines(track.reasons);
    }
    return text;
}

std::string lineText(const CheckedFile& file, bool color) {
    const std::vector<std::string> names = namesOfReasons(file);
    return fmt::format("{}: {}{}{}\n", visible(file.path),
                       emphasised(nameOf(file.verdict()), color), names.empty() ? "" : ": ",
                       fmt::join(names, ", "));
}

std::string csvText(const CheckedFile& file) {
    std::string text;
    if (!file.reasons.empty() || file.tracks.empty()) {
        text += csvLines(csvCells(file, {}), file.reasons);
    }
    for (const CheckedTrack& track : file.tracks) {
        text += csvLines(csvCells(file, track), track.reasons);
    }
    return text;
}

}  // namespace ogmprobe::check
