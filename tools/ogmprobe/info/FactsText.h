// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "info/FileFacts.h"
#include "text/TextTable.h"

namespace ogmprobe {

/** Adds the streams that have no track, in grey, to the table of tracks. */
void addStreamsWithoutTrack(const FileFacts& facts, TextTable& table);

/** Returns the facts that come from the file itself, marked as such; empty without streams. */
std::string factsText(const FileFacts& facts, bool color);

/** Returns the members "duration_us", "streams" and "chapters". */
nlohmann::ordered_json toJson(const FileFacts& facts);

}  // namespace ogmprobe
