// SPDX-License-Identifier: Apache-2.0
#include "options/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "options/CommandLines.h"
#include "options/CommandName.h"
#include "options/CommonOptions.h"
#include "options/HelpTexts.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

/** The options of all commands; those of the chosen one are returned. */
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

/** A command and the function that sets its options. */
struct Command {
    CLI::App* app;
    std::function<CommandOptions()> takeOptions;
};

/** Adds a command; the global options are also accepted after its name. */
template <typename T>
Command addCommand(CLI::App& app, T& options, const char* name, const char* description,
                   const char* examples) {
    CLI::App* command = app.add_subcommand(name, description);
    command->fallthrough();
    command->footer(examples);
    // Adding the options of all commands would take half of the program's start.
    command->preparse_callback([command, &options](size_t) { addOptions(*command, options); });
    return {command, [&options] { return CommandOptions(std::move(options)); }};
}

std::vector<Command> addCommands(CLI::App& app, Collected& collected) {
    return {
            addCommand(app, collected.info, "info",
                       "Show what the files are and which tracks they hold", kInfoExamples),
            addCommand(app, collected.packets, "packets",
                       "List the buffers of all tracks in the order of their times",
                       kPacketsExamples),
            addCommand(app, collected.seekTest, "seektest",
                       "Seek to evenly spaced times and show where each seek lands and what it "
                       "costs",
                       kSeekTestExamples),
            addCommand(app, collected.extract, "extract", "Write each track's buffers into a file",
                       kExtractExamples),
            addCommand(app, collected.timeline, "timeline",
                       "Draw the packets of all tracks over time", kTimelineExamples),
            addCommand(app, collected.explain, "explain",
                       "Say why tracks are missing, the duration is odd, bytes are skipped or "
                       "packets are not returned",
                       kExplainExamples),
            addCommand(app, collected.sync, "sync",
                       "Compare the plug-in's times with those of the file's pages, and audio with "
                       "video",
                       kSyncExamples),
            addCommand(
                    app, collected.compare, "compare",
                    "Show the first difference between two files, or between two plug-ins on one "
                    "file",
                    kCompareExamples),
            addCommand(app, collected.check, "check",
                       "Say whether a device will play the files, and why not", kCheckExamples),
    };
}

std::vector<std::string> namesOf(const std::vector<Command>& commands) {
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const Command& command : commands) {
        names.push_back(command.app->get_name());
    }
    return names;
}

/** Returns a sentence about a missing command, with a suggestion. */
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

/** The parser's own message about a missing argument does not say what to do. */
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
    const std::vector<Command> commands = addCommands(app, collected);
    const std::vector<std::string> names = namesOf(commands);
    std::vector<std::string> arguments = withCommand({argv + 1, argv + argc}, names);
    if (const auto complaint = complaintOfCommand(arguments, names)) {
        return refuse(*complaint, err);
    }
    try {
        // The parser takes the arguments from the end.
        std::reverse(arguments.begin(), arguments.end());
        app.parse(arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error, out, err);
            return ExitCode::kDone;
        }
        return refuse(complaintOf(error), err);
    }
    const auto parsed = std::find_if(commands.begin(), commands.end(),
                                     [](const Command& command) { return command.app->parsed(); });
    return Options{std::move(collected.global), parsed->takeOptions()};
}

}  // namespace ogmprobe
