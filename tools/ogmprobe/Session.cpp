// SPDX-License-Identifier: Apache-2.0
#include "Session.h"

#include <filesystem>

#include "ExitCode.h"

namespace ogmprobe {

PluginLibrary loadPlugin(const GlobalOptions& options) {
    if (!options.pluginPath.empty()) {
        return PluginLibrary(options.pluginPath);
    }
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const auto found = PluginLibrary::findBeside(program.parent_path());
    if (!found) {
        throw ProbeError(ExitCode::kFile,
                         "no plug-in lies beside this program; name one with --plugin");
    }
    return PluginLibrary(*found);
}

}  // namespace ogmprobe
