// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ogmprobe {

/** Returns the command whose name is closest to the written one; nothing if none is close. */
std::optional<std::string> nearestName(const std::string& written,
                                       const std::vector<std::string>& names);

/**
 * The arguments (without the program's name), with "info" in front where the first of them that
 * is no option names no command but looks like a file.
 */
std::vector<std::string> withCommand(std::vector<std::string> arguments,
                                     const std::vector<std::string>& names);

}  // namespace ogmprobe
