// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace ogmprobe {

/** What names standard input where a file is asked for. */
inline constexpr const char* kStandardInput = "-";

/**
 * The path to open for a file that the user names. A plug-in jumps about in its file, so what
 * standard input or a pipe has is written into a temporary file when it is first asked for, to be
 * read from there; the file goes with the program. Not for the extractor's process. Throws
 * `ProbeError` with `kFile`.
 */
std::string pathToOpen(const std::string& name);

/** What a name stands for. */
struct NamedFiles {
    std::vector<std::string> paths;
    /** Why folders in it could not be listed, a sentence each. */
    std::vector<std::string> failures = {};
};

/**
 * The name itself, or, for a folder, the OGM files in it and in the folders below it, sorted by
 * their paths. Throws `ProbeError` with `kFile` for a folder that has none.
 */
NamedFiles filesOf(const std::string& name);

}  // namespace ogmprobe
