// SPDX-License-Identifier: Apache-2.0
#include "check/Summary.h"

#include <fmt/core.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "text/NumberText.h"
#include "text/TextTable.h"
#include "text/VisibleText.h"

namespace ogmprobe::check {

using nlohmann::ordered_json;

std::string Summary::Entry::title() const {
    const ReasonKind* kind = reasonKind(id);
    const std::string text = kind != nullptr ? std::string(kind->title) : id;
    return subject.empty() ? text : fmt::format("{}: {}", text, subject);
}

void Summary::add(const CheckedFile& file) {
    ++mFiles;
    ++mVerdicts[static_cast<size_t>(file.verdict())];
    std::set<std::pair<std::string, std::string>> counted;
    const auto addAll = [&](const std::vector<Reason>& reasons) {
        for (const Reason& reason : reasons) {
            const auto key = std::pair(reason.id, reason.subject);
            if (reason.verdict == Verdict::kPlays || !counted.insert(key).second) {
                continue;
            }
            Entry& entry = mEntries[key];
            entry.id = reason.id;
            entry.subject = reason.subject;
            entry.verdict = reason.verdict;
            ++entry.files;
        }
    };
    addAll(file.reasons);
    for (const CheckedTrack& track : file.tracks) {
        addAll(track.reasons);
    }
}

std::vector<Summary::Entry> Summary::entries() const {
    std::vector<Entry> entries;
    for (const auto& [key, entry] : mEntries) {
        entries.push_back(entry);
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return std::tie(b.verdict, b.files) < std::tie(a.verdict, a.files);
    });
    return entries;
}

std::string countsText(const Summary& summary) {
    const size_t unknown = summary.filesWith(Verdict::kUnknown);
    return fmt::format("{}: {} play, {} play with faults, {} do not play{}",
                       counted(summary.files(), "file"), summary.filesWith(Verdict::kPlays),
                       summary.filesWith(Verdict::kPlaysWithFaults),
                       summary.filesWith(Verdict::kDoesNotPlay),
                       unknown > 0 ? fmt::format(", {} could not be checked", unknown) : "");
}

std::string summaryText(const Summary& summary, bool color) {
    std::string text = countsText(summary) + "\n";
    const auto entries = summary.entries();
    if (entries.empty()) {
        return text;
    }
    TextTable table({{"Files", TextTable::Align::kRight}, {"Verdict"}, {"Reason"}});
    for (const Summary::Entry& entry : entries) {
        table.add({fmt::format("{}", entry.files), std::string(nameOf(entry.verdict)),
                   visible(entry.title())});
    }
    return text + table.text("  ", color);
}

ordered_json toJson(const Summary& summary) {
    auto reasons = ordered_json::array();
    for (const Summary::Entry& entry : summary.entries()) {
        reasons.push_back({{"id", entry.id},
                           {"subject", entry.subject},
                           {"title", entry.title()},
                           {"verdict", nameOf(entry.verdict)},
                           {"files", entry.files}});
    }
    return {{"files", summary.files()},
            {"play", summary.filesWith(Verdict::kPlays)},
            {"play_with_faults", summary.filesWith(Verdict::kPlaysWithFaults)},
            {"do_not_play", summary.filesWith(Verdict::kDoesNotPlay)},
            {"unknown", summary.filesWith(Verdict::kUnknown)},
            {"reasons", std::move(reasons)}};
}

}  // namespace ogmprobe::check
