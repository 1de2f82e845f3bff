// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ogmprobe {

/** Returns the command whose name is most similar; nothing if none is. */
std::optional<std::string> nearestName(const std::string& written,
                                       const std::vector<std::string>& names);

/**
 * Returns the arguments (without the program's name). If the first one that is not an option is not
 * a command but looks like a file, "info" is put before them.
 */
std::vector<std::string> withCommand(std::vector<std::string> arguments,
                                     const std::vector<std::string>& names);

}  // namespace ogmprobe
