// SPDX-License-Identifier: Apache-2.0
#include "process/PluginPath.h"

#include "ExitCode.h"
#include "plugin/PluginLibrary.h"

namespace ogmprobe {

std::filesystem::path pluginPath(const GlobalOptions& options) {
    if (!options.pluginPath.empty()) {
        return options.pluginPath;
    }
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const auto found = PluginLibrary::findBeside(program.parent_path());
    if (!found) {
        throw ProbeError(ExitCode::kFile,
                         "there is no plug-in beside this program; name one with --plugin");
    }
    return *found;
}

}  // namespace ogmprobe
