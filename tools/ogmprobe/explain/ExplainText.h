// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "console/Output.h"
#include "explain/Finding.h"
#include "options/Options.h"

namespace ogmprobe {

/** The line as people know it, and how often it was written. */
std::string lineText(const LoggedLine& line);

/** The findings for people. */
std::string findingsText(const Explanation& explanation, const ExplainOptions& options, bool color);

/** The pages and what lies between them, with the log lines that were written there. */
void writePages(const Explanation& explanation, bool color, Output& output);

/** A line for each stream: what is in the file, what came out, and where the rest is. */
std::string ledgersText(const Explanation& explanation);

nlohmann::ordered_json toJson(const Finding& finding);
nlohmann::ordered_json toJson(const Explanation& explanation, const Ledger& ledger);
nlohmann::ordered_json streamsJson(const Explanation& explanation);
nlohmann::ordered_json pagesJson(const Explanation& explanation);

/** Why the page's packets come out of no track; empty if they do. */
std::string whyNoTrack(const Explanation& explanation, const OggPage& page);

}  // namespace ogmprobe
