// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "console/Output.h"
#include "explain/Finding.h"
#include "options/Options.h"

namespace ogmprobe {

/** Returns the line as a log shows it, and how often it was written. */
std::string lineText(const LoggedLine& line);

/** Returns the findings as text. */
std::string findingsText(const Explanation& explanation, const ExplainOptions& options, bool color);

/** Writes the pages and the bytes between them, with the log lines that were written there. */
void writePages(const Explanation& explanation, bool color, Output& output);

/**
 * Returns a line for each stream: what the file has, what was returned, and where the rest is.
 */
std::string ledgersText(const Explanation& explanation);

nlohmann::ordered_json toJson(const Finding& finding);
nlohmann::ordered_json toJson(const Explanation& explanation, const Ledger& ledger);
nlohmann::ordered_json streamsJson(const Explanation& explanation);
nlohmann::ordered_json pagesJson(const Explanation& explanation);

/** Returns why no track returns the page's packets; empty if one does. */
std::string whyNoTrack(const Explanation& explanation, const OggPage& page);

}  // namespace ogmprobe
