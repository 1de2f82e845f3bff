// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace ogmprobe {

/** Means standard input where a file is expected. */
inline constexpr const char* kStandardInput = "-";

/**
 * Returns the path to open for a file that the user names. A plug-in reads at any offset, so
 * standard input or a pipe is first copied into a temporary file, which is deleted at the end of
 * the program. Not to be called in the extractor's process. Throws `ProbeError` with `kFile`.
 */
std::string pathToOpen(const std::string& name);

/** The files of a name. */
struct NamedFiles {
    std::vector<std::string> paths;
    /** For each folder that could not be listed, a sentence with the reason. */
    std::vector<std::string> failures = {};
};

/**
 * Returns the name itself or, for a folder, the OGM files in it and in the folders below it, sorted
 * by their paths. Throws `ProbeError` with `kFile` for a folder that has none.
 */
NamedFiles filesOf(const std::string& name);

}  // namespace ogmprobe
