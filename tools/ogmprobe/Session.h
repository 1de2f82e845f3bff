// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Console.h"
#include "Options.h"
#include "Output.h"
#include "PluginLibrary.h"

namespace ogmprobe {

/** What every command works with. */
struct Session {
    const GlobalOptions& options;
    Console& console;
    Output& output;
};

/** The plug-in that the options name. Throws as `PluginLibrary` does, or when none is found. */
PluginLibrary loadPlugin(const GlobalOptions& options);

}  // namespace ogmprobe
