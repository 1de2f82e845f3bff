// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Console.h"

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

struct ExplainOptions {
    std::string file;
    /** List the pages too. */
    bool pages = false;
    /** Tell also what is so with every file; with pages, all log lines. */
    bool verbose = false;
    bool json = false;
};

using CommandOptions =
        std::variant<InfoOptions, PacketsOptions, SeekTestOptions, ExtractOptions, ExplainOptions>;

struct Options {
    GlobalOptions global;
    CommandOptions command;
};

}  // namespace ogmprobe
