// SPDX-License-Identifier: Apache-2.0
#include "files/InputFiles.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "ExitCode.h"
#include "files/Descriptor.h"
#include "files/SpooledFile.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

/** What can be read from its beginning to its end, and no other way. */
bool isPipe(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 &&
           (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

Descriptor openPipe(const std::string& path) {
    Descriptor pipe(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (pipe.get() < 0) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot open: {}", std::strerror(errno)));
    }
    return pipe;
}

bool isOgm(const fs::directory_entry& entry) {
    return entry.is_regular_file() && strcasecmp(entry.path().extension().c_str(), ".ogm") == 0;
}

std::vector<std::string> ogmFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (isOgm(entry)) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

std::string pathToOpen(const std::string& name) {
    // By their names: what a pipe had can be read once only.
    static std::map<std::string, SpooledFile> spooled;
    const bool isStandardInput = name == kStandardInput;
    if (!isStandardInput && !isPipe(name)) {
        return name;
    }
    auto found = spooled.find(name);
    if (found == spooled.end()) {
        found = isStandardInput ? spooled.try_emplace(name, STDIN_FILENO, "standard input").first
                                : spooled.try_emplace(name, openPipe(name).get(), name).first;
    }
    return found->second.path();
}

std::vector<std::string> filesOf(const std::string& name) {
    std::error_code ignored;
    if (!fs::is_directory(name, ignored)) {
        return {name};
    }
    std::vector<std::string> files;
    try {
        files = ogmFilesIn(name);
    } catch (const fs::filesystem_error& error) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot list {}: {}", error.path1().string(),
                                                      error.code().message()));
    }
    if (files.empty()) {
        throw ProbeError(ExitCode::kFile, "the folder has no file whose name ends in .ogm");
    }
    return files;
}

}  // namespace ogmprobe
