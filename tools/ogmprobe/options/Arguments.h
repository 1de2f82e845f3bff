// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <variant>

#include "ExitCode.h"
#include "options/Options.h"

namespace ogmprobe {

/**
 * What the command line asks for, or the code to exit with at once: after help or the version on
 * `out`, or after an explanation of what is wrong on `err`.
 */
std::variant<Options, ExitCode> parseArguments(int argc, const char* const* argv, std::ostream& out,
                                               std::ostream& err);

}  // namespace ogmprobe
