// SPDX-License-Identifier: Apache-2.0
// The commands that judge or compare files.
#include <CLI/CLI.hpp>
#include <string>

#include "options/CommandLines.h"
#include "options/CommonOptions.h"
#include "options/Validators.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kMaxComparedSeeks = 1'000'000;
constexpr uint64_t kMaxJobs = 256;

CLI::Validator html() {
    return {[](const std::string& path) -> std::string {
                return path.ends_with(".html") ? "" : path + " does not end in .html";
            },
            ""};
}

}  // namespace

void addOptions(CLI::App& command, ExplainOptions& options) {
    addFiles(command, options.files);
    command.add_flag("--pages", options.pages,
                     "List the file's pages too, with the log lines that were written there");
    command.add_flag("--verbose", options.verbose,
                     "Show usual findings too; with --pages, all log lines");
    command.add_flag("--strict", options.strict, "Exit code 1 if anything unusual is found");
    addCsvAndJson(command, options.csv, options.json);
}

void addOptions(CLI::App& command, SyncOptions& options) {
    addFiles(command, options.files);
    command.add_flag("--packets", options.packets, "List each packet with both times too");
    addCsvAndJson(command, options.csv, options.json,
                  "Each packet as comma-separated values, with a heading");
}

void addOptions(CLI::App& command, CompareOptions& options) {
    command.add_option("A", options.a, "A media file")->type_name("FILE")->required();
    auto* file = command.add_option("B", options.b, "Another, or with --plugin-b the same");
    file->type_name("FILE");
    auto* plugin = command.add_option("--plugin-b", options.pluginB, "Play B with this plug-in");
    plugin->type_name("PATH");
    auto* device = command.add_option("--device", options.device,
                                      "Compare with the output of ogmdump for A on a device");
    device->type_name("DUMP")->excludes(file)->excludes(plugin);
    auto* reads =
            command.add_flag("--reads", options.reads,
                             "Compare the reads of the file too: their order, places and sizes");
    auto* seeks = command.add_option("--seeks", options.seeks,
                                     "Compare seeks to the ends of N equal spaces too");
    seeks->type_name("N")->check(wholeNumber(1, kMaxComparedSeeks));
    auto* logs = command.add_flag_callback(
            "--logs", [&options] { options.logs = true; },
            "Compare the log lines too (default with --plugin-b)");
    command.add_flag_callback(
            "--no-logs", [&options] { options.logs = false; },
            "Do not compare the log lines (default without --plugin-b)");
    addJson(command, options.json);
    device->excludes(reads)->excludes(seeks)->excludes(logs);
    command.callback([file, plugin, device] {
        if (file->empty() && plugin->empty() && device->empty()) {
            throw CLI::RequiredError("B, --plugin-b or --device");
        }
    });
}

void addOptions(CLI::App& command, CheckOptions& options) {
    addFiles(command, options.files);
    command.add_option("--codecs", options.codecs,
                       "A device's list of codecs (media_codecs*.xml); may be repeated")
            ->type_name("XML")
            ->allow_extra_args(false);
    command.add_option("--jobs", options.jobs,
                       "N files at a time (default: the number of processors)")
            ->type_name("N")
            ->check(wholeNumber(1, kMaxJobs));
    command.add_option("--state", options.state,
                       "Keep the results there, and continue where an earlier run ended")
            ->type_name("FILE");
    auto* page = command.add_option("--html", options.html, "Write a page about all files");
    page->type_name("PAGE")->check(html());
    command.add_option("--timelines", options.timelines,
                       "Draw timelines of the files with faults into that folder; the page links "
                       "to them")
            ->type_name("DIR");
    command.add_flag("--force", options.force, "Overwrite a page and timelines that exist");
    addCsvAndJson(command, options.csv, options.json);
}

}  // namespace ogmprobe
