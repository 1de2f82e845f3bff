// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "console/Console.h"
#include "console/Output.h"
#include "console/ProgressLine.h"
#include "options/Options.h"

namespace ogmprobe {

/** What every command works with. */
struct Session {
    const GlobalOptions& options;
    Console& console;
    Output& output;
};

}  // namespace ogmprobe
