// SPDX-License-Identifier: Apache-2.0
#include "options/Arguments.h"

#include <android/log.h>

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <utility>

#include "options/HelpTexts.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

const std::map<std::string, int> kLogLevels = {
        {"verbose", ANDROID_LOG_VERBOSE}, {"debug", ANDROID_LOG_DEBUG},
        {"info", ANDROID_LOG_INFO},       {"warn", ANDROID_LOG_WARN},
        {"error", ANDROID_LOG_ERROR},     {"silent", ANDROID_LOG_SILENT},
};

const std::map<std::string, ColorMode> kColorModes = {
        {"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}};

// The names alone: the mapped numbers mean nothing to a reader of the help.
template <typename T>
CLI::CheckedTransformer oneOf(const std::map<std::string, T>& values, const std::string& names) {
    CLI::CheckedTransformer transformer(values);
    transformer.description(names);
    return transformer;
}

// Without its name in the help, which would stand next to the value's own.
CLI::Validator unnamed(CLI::Validator validator) {
    validator.description("");
    return validator;
}

void addGlobalOptions(CLI::App& app, GlobalOptions& options) {
    app.add_option("--plugin", options.pluginPath,
                   "The plug-in's library (default: the one beside the program)")
            ->type_name("PATH");
    app.add_option("--log", options.logPriority,
                   "Show the plug-in's log lines from this level on (default: none)")
            ->type_name("LEVEL")
            ->transform(oneOf(kLogLevels, "verbose|debug|info|warn|error|silent"));
    app.add_option("--color", options.color, "Colour: auto heeds NO_COLOR and the terminal")
            ->type_name("WHEN")
            ->transform(oneOf(kColorModes, "auto|always|never"));
    app.add_option("--timeout", options.timeoutSeconds,
                   "Longest standstill of the plug-in, and longest repetition of the same reads; "
                   "it may search the file ten times as long; 0: no limit")
            ->type_name("SECONDS")
            ->capture_default_str()
            ->check(unnamed(CLI::NonNegativeNumber));
    app.add_flag("--quiet", options.quiet, "Show neither warnings nor progress");
    app.add_flag("--in-process", options.inProcess,
                 "Run the plug-in in this process, for a debugger: nothing is caught or limited");
}

void addTracks(CLI::App& command, std::vector<size_t>& tracks) {
    command.add_option("--track", tracks, "Only this track; may be given again")
            ->type_name("N")
            ->check(unnamed(CLI::NonNegativeNumber))
            ->allow_extra_args(false);
}

void addFile(CLI::App& command, std::string& file) {
    command.add_option("file", file, "A media file")->type_name("FILE")->required();
}

void addJson(CLI::App& command, bool& json, const char* description) {
    command.add_flag("--json", json, description);
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* description,
                     const char* examples) {
    CLI::App* command = app.add_subcommand(name, description);
    // Options of every command may stand after its name too.
    command->fallthrough();
    command->footer(examples);
    return command;
}

void addInfo(CLI::App& app, InfoOptions& options) {
    CLI::App* command = addCommand(
            app, "info", "Show what the files are and which tracks they hold", kInfoExamples);
    command->add_option("files", options.files, "Media files, or folders of .ogm files")
            ->type_name("FILE")
            ->required();
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
}

void addSeeks(CLI::App& command, std::vector<int64_t>& seeksUs) {
    const auto add = [&seeksUs](const std::string& text) {
        const auto timeUs = parseSeconds(text);
        if (timeUs) {
            seeksUs.push_back(*timeUs);
        }
        return timeUs.has_value();
    };
    command.add_option_function<std::vector<std::string>>(
                   "--seek",
                   [add](const std::vector<std::string>& texts) {
                       for (const std::string& text : texts) {
                           if (!add(text)) {
                               throw CLI::ConversionError(text, "--seek");
                           }
                       }
                   },
                   "Seek there as players do, then read on; may be given again")
            ->type_name("SECONDS")
            ->allow_extra_args(false);
}

void addPackets(CLI::App& app, PacketsOptions& options) {
    CLI::App* command =
            addCommand(app, "packets", "List the buffers of all tracks in the order of their times",
                       kPacketsExamples);
    addFile(*command, options.file);
    addTracks(*command, options.tracks);
    addSeeks(*command, options.seeksUs);
    command->add_option("--count", options.count, "At most so many buffers of each track")
            ->type_name("N")
            ->check(unnamed(CLI::PositiveNumber));
    addJson(*command, options.json, "JSON lines; times are whole microseconds");
}

void addSeekTest(CLI::App& app, SeekTestOptions& options) {
    CLI::App* command = addCommand(app, "seektest",
                                   "Seek to evenly spaced times and show where each seek lands "
                                   "and what it costs",
                                   kSeekTestExamples);
    addFile(*command, options.file);
    command->add_option("--steps", options.steps, "Spaces between the targets")
            ->type_name("N")
            ->capture_default_str()
            ->check(unnamed(CLI::Range(1, 1000000)));
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
}

void addExtract(CLI::App& app, ExtractOptions& options) {
    CLI::App* command =
            addCommand(app, "extract", "Write each track's buffers into a file", kExtractExamples);
    addFile(*command, options.file);
    command->add_option("-o,--output", options.folder, "Folder for the files, made if need be")
            ->type_name("DIR")
            ->required();
    addTracks(*command, options.tracks);
    command->add_flag("--force", options.force, "Overwrite files that exist");
}

CLI::Validator pageOrDrawing() {
    return {[](const std::string& path) -> std::string {
                const std::string_view name = path;
                const bool isKnown = name.ends_with(".html") || name.ends_with(".svg");
                return isKnown ? "" : path + " ends neither in .html nor in .svg";
            },
            ""};
}

void addTimeline(CLI::App& app, TimelineOptions& options) {
    CLI::App* command = addCommand(app, "timeline", "Draw the packets of all tracks over time",
                                   kTimelineExamples);
    addFile(*command, options.file);
    command->add_option("-o,--output", options.output, "The new page (.html) or drawing (.svg)")
            ->type_name("OUT")
            ->required()
            ->check(pageOrDrawing());
    command->add_option("--seek-steps", options.seekSteps,
                        "Spaces between the targets of seeks; 0: no seeks")
            ->type_name("N")
            ->capture_default_str()
            ->check(unnamed(CLI::Range(0, 50)));
    command->add_flag("--force", options.force, "Overwrite a file that exists");
}

void addExplain(CLI::App& app, ExplainOptions& options) {
    CLI::App* command = addCommand(app, "explain",
                                   "Say why tracks are missing, the duration is odd, bytes are "
                                   "skipped or packets do not come out",
                                   kExplainExamples);
    addFile(*command, options.file);
    command->add_flag("--pages", options.pages,
                      "List the file's pages too, with the log lines that were written there");
    command->add_flag("--verbose", options.verbose,
                      "Tell also what is so with every file; with --pages, show all log lines");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
}

void addCompare(CLI::App& app, CompareOptions& options) {
    CLI::App* command = addCommand(app, "compare",
                                   "Tell what differs first between two files, or between two "
                                   "plug-ins on one file",
                                   kCompareExamples);
    command->add_option("A", options.a, "A media file")->type_name("FILE")->required();
    auto* file = command->add_option("B", options.b, "Another, or with --plugin-b the same");
    file->type_name("FILE");
    auto* plugin = command->add_option("--plugin-b", options.pluginB, "Play B with this plug-in");
    plugin->type_name("PATH");
    command->add_flag_callback(
            "--logs", [&options] { options.logs = true; },
            "Compare the log lines too (default with --plugin-b)");
    command->add_flag_callback(
            "--no-logs", [&options] { options.logs = false; },
            "Leave the log lines out (default without --plugin-b)");
    addJson(*command, options.json, "A JSON document; times are whole microseconds");
    command->callback([file, plugin] {
        if (file->empty() && plugin->empty()) {
            throw CLI::RequiredError("B or --plugin-b");
        }
    });
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
    CompareOptions compare;
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
    } else if (name == "compare") {
        command = std::move(collected.compare);
    }
    return {std::move(collected.global), std::move(command)};
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
    addCompare(app, collected.compare);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    return chosen(app, std::move(collected));
}

}  // namespace ogmprobe
