// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "options/Options.h"

/** Options of several commands, with the same description for all. */
namespace ogmprobe {

inline constexpr const char* kCsvText = "Comma-separated values, with a heading";
inline constexpr const char* kJsonText = "A JSON document; times are whole microseconds";

void addGlobalOptions(CLI::App& app, GlobalOptions& options);

/** The files and folders of a command; at least one. */
void addFiles(CLI::App& command, std::vector<std::string>& files);
/** `--track` and `--only-track`, which exclude each other. */
void addTracks(CLI::App& command, TrackChoice& tracks);
/** An option whose value is a time, in seconds or as h:mm:ss. */
void addTime(CLI::App& command, const std::string& name, std::optional<int64_t>& timeUs,
             const char* description);

void addJson(CLI::App& command, bool& json, const char* description = kJsonText);
/** `--csv` and `--json`, which exclude each other. */
void addCsvAndJson(CLI::App& command, bool& csv, bool& json, const char* csvText = kCsvText,
                   const char* jsonText = kJsonText);

}  // namespace ogmprobe
