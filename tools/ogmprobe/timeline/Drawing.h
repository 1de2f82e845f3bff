// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Chart.h"

namespace ogmprobe::timeline {

/** The panels and their legend as an SVG document, with a heading and what went wrong. */
std::string drawingDocument(const Chart& chart);

/** What the file is and how it is drawn, in one line: not escaped. */
std::string summaryOf(const Chart& chart);

/** What went wrong, in sentences; empty if nothing did. Not escaped. */
std::vector<std::string> notesOf(const Chart& chart);

}  // namespace ogmprobe::timeline
