// SPDX-License-Identifier: Apache-2.0
#include "options/Arguments.h"

#include <android/log.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "options/CommandName.h"
#include "options/HelpTexts.h"
#include "options/Validators.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

const std::map<std::string, int> kLogLevels = {
        {"verbose", ANDROID_LOG_VERBOSE}, {"debug", ANDROID_LOG_DEBUG},
        {"info", ANDROID_LOG_INFO},       {"warn", ANDROID_LOG_WARN},
        {"error", ANDROID_LOG_ERROR},     {"silent", ANDROID_LOG_SILENT},
};

const std::map<std::string, ColorMode> kColorModes = {
        {"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}};

/** Turns a name into its number. `names` is what the help shows. */
template <typename T>
CLI::Validator oneOf(const std::map<std::string, T>& values, const std::string& names) {
    return {[values, names](std::string& text) -> std::string {
                const auto found = values.find(text);
                if (found == values.end()) {
                    return text + " is not one of " + names;
                }
                text = std::to_string(static_cast<int>(found->second));
                return "";
            },
            names};
}

constexpr uint64_t kMostTracks = 100'000;
constexpr uint64_t kMostSteps = 1'000'000;
constexpr uint64_t kMostDrawnSteps = 50;
constexpr uint64_t kMostJobs = 256;

void addGlobalOptions(CLI::App& app, GlobalOptions& options) {
    app.add_option("--plugin", options.pluginPath,
                   "The plug-in's library (default: the one beside the program)")
            ->type_name("PATH");
    app.add_option("--log", options.logPriority,
                   "Show the plug-in's log lines from this level on (default: none)")
            ->type_name("LEVEL")
            ->transform(oneOf(kLogLevels, "verbose|debug|info|warn|error|silent"));
    app.add_option("--color", options.color, "Colour: auto follows NO_COLOR and the terminal")
            ->type_name("WHEN")
            ->transform(oneOf(kColorModes, "auto|always|never"));
    app.add_option("--timeout", options.timeoutSeconds,
                   "Longest standstill of the plug-in, and longest repetition of the same reads; "
                   "it may search the file ten times as long; 0: no limit")
            ->type_name("SECONDS")
            ->capture_default_str()
            ->check(secondsFromZero());
    app.add_flag("--quiet", options.quiet, "Hide warnings and progress");
    app.add_flag("--in-process", options.inProcess,
                 "Run the plug-in in this process, for a debugger: nothing is caught or limited");
}

void addTracks(CLI::App& command, TrackChoice& tracks) {
    auto* shown = command.add_option("--track", tracks.shown,
                                     "Play all tracks, show only this one; may be repeated");
    auto* played = command.add_option("--only-track", tracks.played,
                                      "Play only this track; may be repeated");
    for (CLI::Option* option : {shown, played}) {
        option->type_name("N")->check(wholeNumber(0, kMostTracks))->allow_extra_args(false);
    }
    shown->excludes(played);
}

constexpr const char* kFilesText = "Media files, or folders of .ogm files";

void addFiles(CLI::App& command, std::vector<std::string>& files, const char* description) {
    command.add_option("files", files, description)->type_name("FILE")->required();
}

void addJson(CLI::App& command, bool& json, const char* description) {
    command.add_flag("--json", json, description);
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* description,
                     const char* examples) {
    CLI::App* command = app.add_subcommand(name, description);
    // Options of every command may come after its name too.
    command->fallthrough();
    command->footer(examples);
    return command;
}

void addInfo(CLI::App& app, InfoOptions& options) {
    CLI::App* command = addCommand(
            app, "info", "Show what the files are and which tracks they hold", kInfoExamples);
    addFiles(*command, options.files, kFilesText);
    command->add_flag("--format", options.format, "List all entries of all formats");
    command->add_flag("--verbose", options.verbose, "Do not cut long lines of bytes");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
}

void addTime(CLI::App& command, const std::string& name, std::optional<int64_t>& timeUs,
             const char* description) {
    command.add_option_function<std::string>(
                   name, [&timeUs](const std::string& text) { timeUs = parseTime(text); },
                   description)
            ->type_name("TIME")
            ->check(time());
}

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

void addPackets(CLI::App& app, PacketsOptions& options) {
    CLI::App* command =
            addCommand(app, "packets", "List the buffers of all tracks in the order of their times",
                       kPacketsExamples);
    addFiles(*command, options.files, kFilesText);
    addTracks(*command, options.tracks);
    addSeeks(*command, options.seeksUs);
    command->add_option("--count", options.count, "At most N buffers of each track")
            ->type_name("N")
            ->check(wholeNumber(1, UINT64_MAX));
    addTime(*command, "--from", options.fromUs, "List only buffers from this time on");
    addTime(*command, "--to", options.untilUs, "List only buffers before this time");
    command->callback([&options] {
        if (options.fromUs && options.untilUs && *options.untilUs <= *options.fromUs) {
            throw CLI::ValidationError("--to", "the time is not after that of --from");
        }
    });
    command->add_flag("--sync-only", options.syncOnly, "List only sync frames");
    command->add_flag("--clock", options.clock, "Times as h:mm:ss instead of seconds");
    auto* csv = command->add_flag("--csv", options.csv, "Comma-separated values, with a heading");
    addJson(*command, options.json, "JSON lines; times are whole microseconds");
    csv->excludes("--json");
}

void addSeekTest(CLI::App& app, SeekTestOptions& options) {
    CLI::App* command = addCommand(app, "seektest",
                                   "Seek to evenly spaced times and show where each seek lands "
                                   "and what it costs",
                                   kSeekTestExamples);
    addFiles(*command, options.files, kFilesText);
    command->add_option("--steps", options.steps, "Spaces between the targets")
            ->type_name("N")
            ->capture_default_str()
            ->check(wholeNumber(1, kMostSteps));
    command->add_flag("--strict", options.strict,
                      "Exit code 1 if a seek to any time but the last goes to the end");
    auto* csv = command->add_flag("--csv", options.csv, "Comma-separated values, with a heading");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    csv->excludes("--json");
}

void addExtract(CLI::App& app, ExtractOptions& options) {
    CLI::App* command =
            addCommand(app, "extract", "Write each track's buffers into a file", kExtractExamples);
    addFiles(*command, options.files, kFilesText);
    command->add_option("-o,--output", options.folder,
                        "Folder for the files, made if it does not exist; - for one track on "
                        "standard output")
            ->type_name("DIR")
            ->required()
            ->check(anyName());
    addTracks(*command, options.tracks);
    command->add_flag("--force", options.force, "Overwrite files that exist");
}

void addTimeline(CLI::App& app, TimelineOptions& options) {
    CLI::App* command = addCommand(app, "timeline", "Draw the packets of all tracks over time",
                                   kTimelineExamples);
    addFiles(*command, options.files, kFilesText);
    command->add_option("-o,--output", options.output,
                        "The new page (.html) or drawing (.svg); for several files their folder, "
                        "made if it does not exist")
            ->type_name("OUT")
            ->required()
            ->check(anyName());
    command->add_flag("--svg", options.svg, "In a folder: drawings instead of pages");
    command->add_option("--seek-steps", options.seekSteps,
                        "Spaces between the targets of seeks; 0: no seeks")
            ->type_name("N")
            ->capture_default_str()
            ->check(wholeNumber(0, kMostDrawnSteps));
    addTime(*command, "--from", options.fromUs, "Draw only packets from this time on");
    addTime(*command, "--to", options.untilUs, "Draw only packets before this time");
    command->add_flag("--date", options.date, "Write the time of making it into the page");
    command->add_flag("--force", options.force, "Overwrite a file that exists");
}

void addExplain(CLI::App& app, ExplainOptions& options) {
    CLI::App* command = addCommand(app, "explain",
                                   "Say why tracks are missing, the duration is odd, bytes are "
                                   "skipped or packets are not returned",
                                   kExplainExamples);
    addFiles(*command, options.files, kFilesText);
    command->add_flag("--pages", options.pages,
                      "List the file's pages too, with the log lines that were written there");
    command->add_flag("--verbose", options.verbose,
                      "Show usual findings too; with --pages, all log lines");
    command->add_flag("--strict", options.strict, "Exit code 1 if anything unusual is found");
    auto* csv = command->add_flag("--csv", options.csv, "Comma-separated values, with a heading");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    csv->excludes("--json");
}

void addSync(CLI::App& app, SyncOptions& options) {
    CLI::App* command = addCommand(
            app, "sync",
            "Compare the plug-in's times with those of the file's pages, and audio with video",
            kSyncExamples);
    addFiles(*command, options.files, "Media files, or folders of .ogm files");
    command->add_flag("--packets", options.packets, "List each packet with both times too");
    auto* csv = command->add_flag("--csv", options.csv,
                                  "Each packet as comma-separated values, with a heading");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    csv->excludes("--json");
}

void addCompare(CLI::App& app, CompareOptions& options) {
    CLI::App* command = addCommand(
            app, "compare",
            "Show the first difference between two files, or between two plug-ins on one file",
            kCompareExamples);
    command->add_option("A", options.a, "A media file")->type_name("FILE")->required();
    auto* file = command->add_option("B", options.b, "Another, or with --plugin-b the same");
    file->type_name("FILE");
    auto* plugin = command->add_option("--plugin-b", options.pluginB, "Play B with this plug-in");
    plugin->type_name("PATH");
    auto* device = command->add_option("--device", options.device,
                                       "Compare with the output of ogmdump for A on a device");
    device->type_name("DUMP")->excludes(file)->excludes(plugin);
    auto* reads =
            command->add_flag("--reads", options.reads,
                              "Compare the reads of the file too: their order, places and sizes");
    auto* seeks = command->add_option("--seeks", options.seeks,
                                      "Compare seeks to the ends of N equal spaces too");
    seeks->type_name("N")->check(wholeNumber(1, kMostSteps));
    auto* logs = command->add_flag_callback(
            "--logs", [&options] { options.logs = true; },
            "Compare the log lines too (default with --plugin-b)");
    command->add_flag_callback(
            "--no-logs", [&options] { options.logs = false; },
            "Do not compare the log lines (default without --plugin-b)");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    device->excludes(reads)->excludes(seeks)->excludes(logs);
    command->callback([file, plugin, device] {
        if (file->empty() && plugin->empty() && device->empty()) {
            throw CLI::RequiredError("B, --plugin-b or --device");
        }
    });
}

CLI::Validator html() {
    return {[](const std::string& path) -> std::string {
                return path.ends_with(".html") ? "" : path + " does not end in .html";
            },
            ""};
}

void addCheck(CLI::App& app, CheckOptions& options) {
    CLI::App* command = addCommand(
            app, "check", "Say whether a device will play the files, and why not", kCheckExamples);
    addFiles(*command, options.files, "Media files, or folders of .ogm files");
    command->add_option("--codecs", options.codecs,
                        "A device's list of codecs (media_codecs*.xml); may be repeated")
            ->type_name("XML")
            ->allow_extra_args(false);
    command->add_option("--jobs", options.jobs,
                        "N files at a time (default: the number of processors)")
            ->type_name("N")
            ->check(wholeNumber(1, kMostJobs));
    command->add_option("--state", options.state,
                        "Keep the results there, and continue where an earlier run ended")
            ->type_name("FILE");
    auto* page = command->add_option("--html", options.html, "Write a page about all files");
    page->type_name("PAGE")->check(html());
    command->add_option("--timelines", options.timelines,
                        "Draw timelines of the files with faults into that folder; the page links "
                        "to them")
            ->type_name("DIR");
    command->add_flag("--force", options.force, "Overwrite a page and timelines that exist");
    auto* csv = command->add_flag("--csv", options.csv, "Comma-separated values, with a heading");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    csv->excludes("--json");
}

/** Room for the options of all commands, of which one is then taken. */
struct Collected {
    GlobalOptions global;
    InfoOptions info;
    PacketsOptions packets;
    SeekTestOptions seekTest;
    ExtractOptions extract;
    TimelineOptions timeline;
    ExplainOptions explain;
    SyncOptions sync;
    CompareOptions compare;
    CheckOptions check;
};

Options chosen(const CLI::App& app, Collected collected) {
    const std::string name = app.get_subcommands().front()->get_name();
    CommandOptions command = std::move(collected.info);
    if (name == "packets") {
        command = std::move(collected.packets);
    } else if (name == "seektest") {
        command = std::move(collected.seekTest);
    } else if (name == "extract") {
        command = std::move(collected.extract);
    } else if (name == "timeline") {
        command = std::move(collected.timeline);
    } else if (name == "explain") {
        command = std::move(collected.explain);
    } else if (name == "sync") {
        command = std::move(collected.sync);
    } else if (name == "compare") {
        command = std::move(collected.compare);
    } else if (name == "check") {
        command = std::move(collected.check);
    }
    return {std::move(collected.global), std::move(command)};
}

std::vector<std::string> namesOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

/** Returns a sentence about a missing command, with the one that was probably intended. */
std::optional<std::string> complaintOfCommand(const std::vector<std::string>& arguments,
                                              const std::vector<std::string>& names) {
    const auto isName = [&names](const std::string& word) {
        return std::find(names.begin(), names.end(), word) != names.end();
    };
    const auto word = std::find_if(arguments.begin(), arguments.end(),
                                   [](const auto& argument) { return !argument.starts_with("-"); });
    if (word == arguments.end() || std::any_of(arguments.begin(), arguments.end(), isName)) {
        return std::nullopt;
    }
    const auto nearest = nearestName(*word, names);
    return *word + " is neither a command nor a file" +
           (nearest ? "; did you mean " + *nearest + "?" : "");
}

/** The parser's own words for what is missing name no remedy. */
std::string complaintOf(const CLI::ParseError& error) {
    const std::string complaint = error.what();
    if (complaint == "A subcommand is required") {
        return "name a file, or a command and its files; ogmprobe --help lists the commands";
    }
    return complaint == "files is required" ? "FILE is required" : complaint;
}

ExitCode refuse(const std::string& complaint, std::ostream& err) {
    err << "ogmprobe: error: " << visible(complaint) << '\n';
    return ExitCode::kUsage;
}

}  // namespace

std::variant<Options, ExitCode> parseArguments(int argc, const char* const* argv, std::ostream& out,
                                               std::ostream& err) {
    CLI::App app("Plays the media framework's part for a media-extractor plug-in.", "ogmprobe");
    app.set_version_flag("--version", "ogmprobe " OGMPROBE_VERSION);
    app.footer(kExitCodes);
    app.require_subcommand(1);
    Collected collected;
    addGlobalOptions(app, collected.global);
    addInfo(app, collected.info);
    addPackets(app, collected.packets);
    addSeekTest(app, collected.seekTest);
    addExtract(app, collected.extract);
    addTimeline(app, collected.timeline);
    addExplain(app, collected.explain);
    addSync(app, collected.sync);
    addCompare(app, collected.compare);
    addCheck(app, collected.check);
    const std::vector<std::string> names = namesOf(app);
    std::vector<std::string> arguments = withCommand({argv + 1, argv + argc}, names);
    if (const auto complaint = complaintOfCommand(arguments, names)) {
        return refuse(*complaint, err);
    }
    try {
        // The parser takes them from the end on.
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error, out, err);
            return ExitCode::kDone;
        }
        return refuse(complaintOf(error), err);
    }
    return chosen(app, std::move(collected));
}

}  // namespace ogmprobe
