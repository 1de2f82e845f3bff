// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
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
    /** Lowest log priority to show (`ANDROID_LOG_VERBOSE` and so on); nothing: no line is shown. */
    std::optional<int> logPriority;
    ColorMode color = ColorMode::kAuto;
    /** How long the plug-in may make no progress; 0: no limit. */
    double timeoutSeconds = 10;
    /** Hides warnings and progress. */
    bool quiet = false;
    /** Runs the plug-in unprotected in this process, for a debugger. */
    bool inProcess = false;
};

struct InfoOptions {
    std::vector<std::string> files;
    /** List all entries of all formats. */
    bool format = false;
    /** Do not cut long lines. */
    bool verbose = false;
    bool json = false;
};

/** Tracks are named by their indices; empty: all. */
struct TrackChoice {
    /** Tracks to show; all tracks are played. */
    std::vector<size_t> shown;
    /** Tracks to play without the others. */
    std::vector<size_t> played;

    bool shows(uint64_t track) const {
        return shown.empty() || std::find(shown.begin(), shown.end(), track) != shown.end();
    }
};

struct PacketsOptions {
    std::vector<std::string> files;
    TrackChoice tracks;
    /** Empty: read from the beginning. */
    std::vector<int64_t> seeksUs;
    /** Maximum number of buffers of each track after each seek. */
    std::optional<uint64_t> count;
    /** Only packets of these times, the second not included. */
    std::optional<int64_t> fromUs;
    std::optional<int64_t> untilUs;
    bool syncOnly = false;
    /** Times as h:mm:ss instead of seconds. */
    bool clock = false;
    bool json = false;
    bool csv = false;
};

struct SeekTestOptions {
    std::vector<std::string> files;
    uint32_t steps = 20;
    /** Exit code 1 if a seek misses. */
    bool strict = false;
    bool json = false;
    bool csv = false;
};

struct ExtractOptions {
    std::vector<std::string> files;
    /** "-": standard output. */
    std::string folder;
    TrackChoice tracks;
    bool force = false;
};

struct TimelineOptions {
    std::vector<std::string> files;
    /** For one file, a file name ending in ".html" or ".svg", which decides the format. Or a
     * folder. */
    std::string output;
    /** In a folder, write drawings instead of pages. */
    bool svg = false;
    /** Number of spaces between the targets of seeks; 0: no seeks. */
    uint32_t seekSteps = 8;
    /** Only packets of these times, the second not included. */
    std::optional<int64_t> fromUs;
    std::optional<int64_t> untilUs;
    /** Add the time of creation. */
    bool date = false;
    bool force = false;
};

struct ExplainOptions {
    std::vector<std::string> files;
    bool csv = false;
    /** Exit code 1 if something unusual was found. */
    bool strict = false;
    /** List the pages too. */
    bool pages = false;
    /** Show usual findings too; with pages, all log lines. */
    bool verbose = false;
    bool json = false;
};

struct SyncOptions {
    std::vector<std::string> files;
    /** List each packet too. */
    bool packets = false;
    bool json = false;
    bool csv = false;
};

struct CompareOptions {
    std::string a;
    /** Empty: the same file. */
    std::string b;
    /** A device's dump to use as B; empty: none. */
    std::string device;
    /** Empty: the same plug-in. */
    std::string pluginB;
    /** Whether log lines are compared; nothing: only if the plug-ins differ. */
    std::optional<bool> logs;
    /** Whether reads of the files are compared. */
    bool reads = false;
    /** Number of equal spaces at whose ends seeks are compared; 0: no seeks. */
    uint32_t seeks = 0;
    bool json = false;
};

struct CheckOptions {
    std::vector<std::string> files;
    /** Lists of a device's codecs; empty: the decoders of a stock Android 13. */
    std::vector<std::string> codecs;
    /** Where to store results; empty: nowhere. */
    std::string state;
    /** Number of files at a time; 0: as many as there are processors. */
    size_t jobs = 0;
    /** A page about all files; empty: none. */
    std::string html;
    /** A folder for timelines of files that have faults; empty: none. */
    std::string timelines;
    bool force = false;
    bool json = false;
    bool csv = false;
};

using CommandOptions =
        std::variant<InfoOptions, PacketsOptions, SeekTestOptions, ExtractOptions, TimelineOptions,
                     ExplainOptions, SyncOptions, CompareOptions, CheckOptions>;

struct Options {
    GlobalOptions global;
    CommandOptions command;
};

}  // namespace ogmprobe
