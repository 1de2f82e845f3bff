// SPDX-License-Identifier: Apache-2.0
#include "check/HtmlReport.h"

#include <fmt/core.h>

#include <array>
#include <filesystem>

#include "Markup.h"
#include "PageHead.h"
#include "check/CheckText.h"
#include "check/ReportTexts.h"
#include "text/Address.h"
#include "text/NumberText.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe::check {
namespace {

using timeline::escaped;
using timeline::filledIn;
using timeline::pageHead;

constexpr std::array<std::string_view, 4> kClasses = {"plays", "faults", "stops", "stops"};

std::string_view classOf(Verdict verdict) {
    return kClasses[static_cast<size_t>(verdict)];
}

/** Escapes invalid bytes and characters that change the direction of writing. */
std::string shown(const std::string& text) {
    return escaped(visible(text));
}

std::string cell(std::string_view attributes, const std::string& content) {
    return fmt::format("<td{}>{}</td>", attributes, content);
}

/** A cell that is sorted by the number and may show something else. */
std::string numberCell(double number, const std::string& content) {
    return cell(fmt::format(" class=\"number\" data-sort=\"{:.10g}\"", number), content);
}

std::string reasonItems(const std::vector<Reason>& reasons, const std::string& about) {
    std::string items;
    for (const Reason& reason : reasons) {
        if (reason.verdict != Verdict::kPlays) {
            items += fmt::format("<li class=\"{}\">{}{} <code>{}</code></li>",
                                 classOf(reason.verdict), about, shown(reason.text),
                                 shown(reason.id));
        }
    }
    return items;
}

/** "track 0 (video)" */
std::string shortTitleOf(const CheckedTrack& track) {
    return fmt::format("{} ({})", track.index ? fmt::format("track {}", *track.index) : "no track",
                       visible(track.kind));
}

std::string reasonList(const CheckedFile& file) {
    std::string items = reasonItems(file.reasons, "");
    for (const CheckedTrack& track : file.tracks) {
        items += reasonItems(track.reasons, escaped(shortTitleOf(track)) + ": ");
    }
    return items.empty() ? "" : "<ul>" + items + "</ul>";
}

std::string quotedForShell(const std::string& text) {
    std::string quoted = "'";
    for (const char letter : text) {
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    }
    return quoted + "'";
}

std::string timelineCell(const CheckedFile& file, const HtmlReport::Timeline& timeline) {
    if (!timeline.path.empty()) {
        return cell("", fmt::format("<a href=\"{}\">timeline</a>", addressOfPath(timeline.path)));
    }
    if (!file.durationUs) {
        return cell("", "");
    }
    const std::string failure =
            timeline.failure.empty() ? "" : fmt::format("not drawn: {} ", shown(timeline.failure));
    return cell("", fmt::format("{}<code>{}</code>", failure, shown(timelineCommand(file.path))));
}

std::string summaryRows(const Summary& summary) {
    std::string rows;
    for (const Summary::Entry& entry : summary.entries()) {
        rows += fmt::format(
                "<tr class=\"{}\"><td class=\"number\">{}</td><td>{}</td><td>{}</td></tr>\n",
                classOf(entry.verdict), entry.files, nameOf(entry.verdict), shown(entry.title()));
    }
    return rows;
}

}  // namespace

std::string timelineCommand(const std::string& path) {
    const std::string stem = std::filesystem::path(path).stem().string();
    // So that a name that begins with "-" is not taken as an option.
    const std::string file = path.starts_with('-') ? "./" + path : path;
    return fmt::format("ogmprobe timeline {} -o {}", quotedForShell(file),
                       quotedForShell("./" + stem + ".html"));
}

void HtmlReport::add(const CheckedFile& file, const Timeline& timeline) {
    const Verdict verdict = file.verdict();
    const auto durationUs = file.durationUs.value_or(0);
    mRows += fmt::format("<tr class=\"{}\">", classOf(verdict));
    mRows += cell(fmt::format(" data-sort=\"{}\"", static_cast<int>(verdict)),
                  std::string(nameOf(verdict)));
    mRows += cell("", fmt::format("<bdi>{}</bdi>", shown(file.path)));
    mRows += numberCell(static_cast<double>(file.sizeBytes), sizeText(file.sizeBytes));
    mRows += numberCell(static_cast<double>(durationUs), durationText(file.durationUs));
    mRows += numberCell(static_cast<double>(namesOfReasons(file).size()), reasonList(file));
    mRows += timelineCell(file, timeline) + "</tr>\n";
}

std::string HtmlReport::document(const Summary& summary, const std::string& decoders) const {
    return filledIn(kReportPage, {{"head", pageHead("Will it play?", std::string(kReportSheet))},
                                  {"counts", escaped(countsText(summary))},
                                  {"decoders", shown(decoders)},
                                  {"summary", summaryRows(summary)},
                                  {"files", mRows},
                                  {"script", std::string(kReportScript)}});
}

}  // namespace ogmprobe::check
