// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Chart.h"

namespace ogmprobe::timeline {

/** Returns an SVG document with a heading, failures, the panels and their legend. */
std::string drawingDocument(const Chart& chart);

/** Returns one line about the file and how it is drawn. Not escaped. */
std::string summaryOf(const Chart& chart);

/** Returns sentences about failures; empty if there were none. Not escaped. */
std::vector<std::string> notesOf(const Chart& chart);

}  // namespace ogmprobe::timeline
