// SPDX-License-Identifier: Apache-2.0
#include "Page.h"

#include <fmt/core.h>

#include "Drawing.h"
#include "Markup.h"
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

}  // namespace

std::string pageDocument(const Chart& chart) {
    return filledIn(kPage, {{"title", escaped(chart.timeline.fileName)},
                            {"drawing sheet", std::string(kDrawingSheet)},
                            {"page sheet", std::string(kPageSheet)},
                            {"summary", escaped(summaryOf(chart))},
                            {"notes", noteList(chart)},
                            {"tracks", trackTable(chart)},
                            {"drawing", drawingElement(chart)},
                            {"reads", readTable(chart)},
                            {"data", pageData(chart)},
                            {"script", std::string(kPageScript)}});
}

}  // namespace ogmprobe::timeline
