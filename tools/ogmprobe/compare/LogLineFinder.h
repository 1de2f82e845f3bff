// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "options/Options.h"

namespace ogmprobe {

struct FoundLine {
    /** Nothing if there are fewer lines. */
    std::optional<std::string> text;
    /** The current call: "read of track 1". */
    std::string call;
};

/** Plays the file until the line with the number, counted from 0, is logged. */
FoundLine findLogLine(const std::string& path, const GlobalOptions& options, uint64_t number);

}  // namespace ogmprobe
