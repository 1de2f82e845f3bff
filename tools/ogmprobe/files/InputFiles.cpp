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

/** Returns whether the file can only be read from beginning to end. */
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
    std::error_code ignored;
    return entry.is_regular_file(ignored) &&
           strcasecmp(entry.path().extension().c_str(), ".ogm") == 0;
}

/** Not through links, which may lead in circles. */
bool isFolder(const fs::directory_entry& entry) {
    std::error_code ignored;
    return !entry.is_symlink(ignored) && entry.is_directory(ignored);
}

/** A folder that cannot be listed affects only its own files. */
void addOgmFilesIn(const fs::path& folder, NamedFiles& files) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (isFolder(*entry)) {
            addOgmFilesIn(entry->path(), files);
        } else if (isOgm(*entry)) {
            files.paths.push_back(entry->path().string());
        }
    }
    if (error) {
        files.failures.push_back(
                fmt::format("cannot list {}: {}", folder.string(), error.message()));
    }
}

}  // namespace

std::string pathToOpen(const std::string& name) {
    // By name, because a pipe can be read only once.
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

NamedFiles filesOf(const std::string& name) {
    std::error_code ignored;
    if (!fs::is_directory(name, ignored)) {
        return {{name}};
    }
    NamedFiles files;
    addOgmFilesIn(name, files);
    if (files.paths.empty() && files.failures.empty()) {
        throw ProbeError(ExitCode::kFile, "the folder has no file whose name ends in .ogm");
    }
    std::sort(files.paths.begin(), files.paths.end());
    return files;
}

}  // namespace ogmprobe
