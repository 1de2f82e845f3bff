// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "console/Console.h"
#include "console/Output.h"
#include "options/Options.h"

namespace ogmprobe {

/** The parts that every command uses. */
struct Session {
    const GlobalOptions& options;
    Console& console;
    Output& output;
};

}  // namespace ogmprobe
