// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "sync/FileSync.h"

namespace ogmprobe {

/** "audio runs up to 0.522 s early at 0:00:12.300", for the worst pair or track of a file. */
std::string worstSentence(const FileSync& sync);

/** Tables of the tracks and pairs, and a sentence about each. */
std::string syncText(const FileSync& sync, bool color);

/** A table of each track's packets. */
std::string packetsText(const FileSync& sync, bool color);

inline constexpr const char* kSyncCsvHeading =
        "file,track,serial,number,offset,page_from,page_to,time,late_from,late_to\n";
std::string syncCsvLines(const std::string& path, const FileSync& sync);

/** The members "tracks" and "pairs". */
nlohmann::ordered_json tracksJson(const FileSync& sync);
nlohmann::ordered_json pairsJson(const FileSync& sync);

}  // namespace ogmprobe
