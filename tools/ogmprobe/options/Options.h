// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "console/Console.h"

namespace ogmprobe {

/** Options of every command. */
struct GlobalOptions {
    /** Empty: the one beside the program. */
    std::string pluginPath;
    /** Least log priority to show (`ANDROID_LOG_VERBOSE` and so on); nothing hides all lines. */
    std::optional<int> logPriority;
    ColorMode color = ColorMode::kAuto;
    /** How long the plug-in may stand still; 0 for ever. */
    double timeoutSeconds = 10;
    /** Shows neither warnings nor progress. */
    bool quiet = false;
    /** Runs the plug-in unprotected, within reach of a debugger. */
    bool inProcess = false;
};

struct InfoOptions {
    std::vector<std::string> files;
    bool json = false;
};

struct PacketsOptions {
    std::string file;
    /** Empty: all. */
    std::vector<size_t> tracks;
    /** Empty: read from the beginning. */
    std::vector<int64_t> seeksUs;
    /** Buffers a track, after each seek. */
    std::optional<uint64_t> count;
    bool json = false;
};

struct SeekTestOptions {
    std::string file;
    uint32_t steps = 20;
    bool json = false;
};

struct ExtractOptions {
    std::string file;
    std::string folder;
    /** Empty: all. */
    std::vector<size_t> tracks;
    bool force = false;
};

struct TimelineOptions {
    std::string file;
    /** Ends in ".html" or ".svg", which says what is written. */
    std::string output;
    /** Spaces between the targets of seeks; 0 leaves seeks out. */
    uint32_t seekSteps = 8;
    bool force = false;
};

struct ExplainOptions {
    std::string file;
    /** List the pages too. */
    bool pages = false;
    /** Tell also what is so with every file; with pages, all log lines. */
    bool verbose = false;
    bool json = false;
};

struct CompareOptions {
    std::string a;
    /** Empty: the same file. */
    std::string b;
    /** Empty: the same plug-in. */
    std::string pluginB;
    /** Whether log lines are compared; nothing: if the plug-ins differ. */
    std::optional<bool> logs;
    bool json = false;
};

using CommandOptions = std::variant<InfoOptions, PacketsOptions, SeekTestOptions, ExtractOptions,
                                    TimelineOptions, ExplainOptions, CompareOptions>;

struct Options {
    GlobalOptions global;
    CommandOptions command;
};

}  // namespace ogmprobe
