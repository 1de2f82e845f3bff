// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include <fmt/core.h>

#include <utility>

#include "Drawing.h"
#include "Markup.h"
#include "PageHead.h"
#include "PageTexts.h"

namespace ogmprobe::timeline {
namespace {

std::string noteList(const Chart& chart) {
    std::string text;
    for (const std::string& note : notesOf(chart)) {
        text += fmt::format("<li>{}</li>\n", escaped(note));
    }
    return text.empty() ? "" : "<ul class=\"notes\">\n" + text + "</ul>";
}

std::string worstLine(const Timeline& timeline) {
    return timeline.worstTimes.empty()
                   ? ""
                   : fmt::format("<p class=\"worst\">Against the file's pages: {}.</p>",
                                 escaped(timeline.worstTimes));
}

/** "Made by ogmprobe 1.2 with the plug-in X, of 300 bytes with the digest 0123." */
std::string originOf(const Timeline& timeline) {
    const Origin& origin = timeline.origin;
    const std::string digest =
            origin.fileDigest ? fmt::format(" with the digest {:016x} (FNV-1a)", *origin.fileDigest)
                              : "";
    return fmt::format("Made{} by {} with the plug-in {}, of {} bytes{}.",
                       origin.date.empty() ? "" : " on " + origin.date, origin.program,
                       origin.plugin, timeline.file.sizeBytes, digest);
}

}  // namespace

std::string pageDocument(const Chart& chart) {
    PageData data = pageData(chart);
    const std::string& name = chart.timeline.fileName;
    const std::string sheet = fmt::format("{}{}", kDrawingSheet, kPageSheet);
    return filledIn(kPage, {{"head", pageHead(name + " - timeline", sheet)},
                            {"title", escaped(name)},
                            {"summary", escaped(summaryOf(chart))},
                            {"origin", escaped(originOf(chart.timeline))},
                            {"worst", worstLine(chart.timeline)},
                            {"notes", noteList(chart)},
                            {"tracks", trackTable(chart)},
                            {"reads", readTable(chart)},
                            {"outline", std::move(data.outline)},
                            {"columns", std::move(data.columns)},
                            {"script", std::string(kPageScript)}});
}

}  // namespace ogmprobe::timeline
