// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include "options/Options.h"

/** Each function adds a command, whose options are written to `options`, and returns it. */
namespace ogmprobe {

CLI::App* addInfo(CLI::App& app, InfoOptions& options);
CLI::App* addPackets(CLI::App& app, PacketsOptions& options);
CLI::App* addSeekTest(CLI::App& app, SeekTestOptions& options);
CLI::App* addExtract(CLI::App& app, ExtractOptions& options);
CLI::App* addTimeline(CLI::App& app, TimelineOptions& options);
CLI::App* addExplain(CLI::App& app, ExplainOptions& options);
CLI::App* addSync(CLI::App& app, SyncOptions& options);
CLI::App* addCompare(CLI::App& app, CompareOptions& options);
CLI::App* addCheck(CLI::App& app, CheckOptions& options);

}  // namespace ogmprobe
