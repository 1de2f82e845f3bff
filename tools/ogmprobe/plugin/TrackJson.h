// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "plugin/TrackDescription.h"

namespace ogmprobe {

nlohmann::ordered_json toJson(const TrackDescription& track);
/** Returns an object for each entry. */
nlohmann::ordered_json toJson(const std::vector<FormatEntry>& entries);

}  // namespace ogmprobe
