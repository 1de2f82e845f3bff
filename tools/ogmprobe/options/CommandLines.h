// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include "options/Options.h"

/** Each function adds the options of a command, whose values are written to `options`. */
namespace ogmprobe {

void addOptions(CLI::App& command, InfoOptions& options);
void addOptions(CLI::App& command, PacketsOptions& options);
void addOptions(CLI::App& command, SeekTestOptions& options);
void addOptions(CLI::App& command, ExtractOptions& options);
void addOptions(CLI::App& command, TimelineOptions& options);
void addOptions(CLI::App& command, ExplainOptions& options);
void addOptions(CLI::App& command, SyncOptions& options);
void addOptions(CLI::App& command, CompareOptions& options);
void addOptions(CLI::App& command, CheckOptions& options);

}  // namespace ogmprobe
