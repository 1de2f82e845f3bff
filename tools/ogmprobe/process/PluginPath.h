// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>

#include "options/Options.h"

namespace ogmprobe {

/**
 * Returns the plug-in that the options name, or the one beside the program. Throws `ProbeError`.
 */
std::filesystem::path pluginPath(const GlobalOptions& options);

}  // namespace ogmprobe
