// SPDX-License-Identifier: Apache-2.0
// The commands that show or write the plug-in's output.
#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "options/CommandLines.h"
#include "options/CommonOptions.h"
#include "options/Validators.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kMaxSteps = 1'000'000;
constexpr uint64_t kMaxDrawnSteps = 50;

void addSeeks(CLI::App& command, std::vector<int64_t>& seeksUs) {
    command.add_option_function<std::vector<std::string>>(
                   "--seek",
                   [&seeksUs](const std::vector<std::string>& texts) {
                       for (const std::string& text : texts) {
                           seeksUs.push_back(parseTime(text).value_or(0));
                       }
                   },
                   "Seek there as players do, then read on; may be repeated")
            ->type_name("TIME")
            ->check(time())
            ->allow_extra_args(false);
}

}  // namespace

void addOptions(CLI::App& command, InfoOptions& options) {
    addFiles(command, options.files);
    command.add_flag("--format", options.format, "List all entries of all formats");
    command.add_flag("--verbose", options.verbose, "Do not cut long lines of bytes");
    addJson(command, options.json);
}

void addOptions(CLI::App& command, PacketsOptions& options) {
    addFiles(command, options.files);
    addTracks(command, options.tracks);
    addSeeks(command, options.seeksUs);
    command.add_option("--count", options.count, "At most N buffers of each track")
            ->type_name("N")
            ->check(wholeNumber(1, UINT64_MAX));
    addTime(command, "--from", options.fromUs, "List only buffers from this time on");
    addTime(command, "--to", options.untilUs, "List only buffers before this time");
    command.callback([&options] {
        if (options.fromUs && options.untilUs && *options.untilUs <= *options.fromUs) {
            throw CLI::ValidationError("--to", "the time is not after that of --from");
        }
    });
    command.add_flag("--sync-only", options.syncOnly, "List only sync frames");
    command.add_flag("--clock", options.clock, "Times as h:mm:ss instead of seconds");
    addCsvAndJson(command, options.csv, options.json, kCsvText,
                  "JSON lines; times are whole microseconds");
}

void addOptions(CLI::App& command, SeekTestOptions& options) {
    addFiles(command, options.files);
    command.add_option("--steps", options.steps, "Spaces between the targets")
            ->type_name("N")
            ->capture_default_str()
            ->check(wholeNumber(1, kMaxSteps));
    command.add_flag("--strict", options.strict,
                     "Exit code 1 if a seek to any time but the last goes to the end");
    addCsvAndJson(command, options.csv, options.json);
}

void addOptions(CLI::App& command, ExtractOptions& options) {
    addFiles(command, options.files);
    command.add_option("-o,--output", options.folder,
                       "Folder for the files, made if it does not exist; - for one track on "
                       "standard output")
            ->type_name("DIR")
            ->required()
            ->check(anyName());
    addTracks(command, options.tracks);
    command.add_flag("--force", options.force, "Overwrite files that exist");
}

void addOptions(CLI::App& command, TimelineOptions& options) {
    addFiles(command, options.files);
    command.add_option("-o,--output", options.output,
                       "The new page (.html) or drawing (.svg); for several files their folder, "
                       "made if it does not exist")
            ->type_name("OUT")
            ->required()
            ->check(anyName());
    command.add_flag("--svg", options.svg, "In a folder: drawings instead of pages");
    command.add_option("--seek-steps", options.seekSteps,
                       "Spaces between the targets of seeks; 0: no seeks")
            ->type_name("N")
            ->capture_default_str()
            ->check(wholeNumber(0, kMaxDrawnSteps));
    addTime(command, "--from", options.fromUs, "Draw only packets from this time on");
    addTime(command, "--to", options.untilUs, "Draw only packets before this time");
    command.add_flag("--date", options.date, "Write the time of making it into the page");
    command.add_flag("--force", options.force, "Overwrite a file that exists");
}

}  // namespace ogmprobe
