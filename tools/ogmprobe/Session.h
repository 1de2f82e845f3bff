// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Console.h"
#include "Options.h"
#include "Output.h"

namespace ogmprobe {

/** What every command works with. */
struct Session {
    const GlobalOptions& options;
    Console& console;
    Output& output;
};

}  // namespace ogmprobe
