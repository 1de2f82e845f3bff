// SPDX-License-Identifier: Apache-2.0
#include "options/CommonOptions.h"

#include <android/log.h>

#include <map>

#include "options/Validators.h"
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

/** Converts a name to its number. The help shows `names`. */
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

constexpr uint64_t kMaxTracks = 100'000;

}  // namespace

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

void addFiles(CLI::App& command, std::vector<std::string>& files) {
    command.add_option("files", files, "Media files, or folders of .ogm files")
            ->type_name("FILE")
            ->required();
}

void addTracks(CLI::App& command, TrackChoice& tracks) {
    auto* shown = command.add_option("--track", tracks.shown,
                                     "Play all tracks, show only this one; may be repeated");
    auto* played = command.add_option("--only-track", tracks.played,
                                      "Play only this track; may be repeated");
    for (CLI::Option* option : {shown, played}) {
        option->type_name("N")->check(wholeNumber(0, kMaxTracks))->allow_extra_args(false);
    }
    shown->excludes(played);
}

void addTime(CLI::App& command, const std::string& name, std::optional<int64_t>& timeUs,
             const char* description) {
    command.add_option_function<std::string>(
                   name, [&timeUs](const std::string& text) { timeUs = parseTime(text); },
                   description)
            ->type_name("TIME")
            ->check(time());
}

void addJson(CLI::App& command, bool& json, const char* description) {
    command.add_flag("--json", json, description);
}

void addCsvAndJson(CLI::App& command, bool& csv, bool& json, const char* csvText,
                   const char* jsonText) {
    CLI::Option* option = command.add_flag("--csv", csv, csvText);
    addJson(command, json, jsonText);
    option->excludes("--json");
}

}  // namespace ogmprobe
