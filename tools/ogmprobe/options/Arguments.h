// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <variant>

#include "ExitCode.h"
#include "options/Options.h"

namespace ogmprobe {

/**
 * Returns the options of the command line, or the exit code to end with: after help or the version
 * on `out`, or after an error message on `err`.
 */
std::variant<Options, ExitCode> parseArguments(int argc, const char* const* argv, std::ostream& out,
                                               std::ostream& err);

}  // namespace ogmprobe
