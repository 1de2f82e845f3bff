// SPDX-License-Identifier: Apache-2.0
#include "files/OutputFolder.h"

#include <fmt/core.h>

#include "ExitCode.h"
#include "files/InputFiles.h"

namespace ogmprobe {

namespace fs = std::filesystem;

void makeFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::exists(folder, error) && !fs::is_directory(folder, error)) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot make the folder {}: a file has that "
                                                      "name",
                                                      folder.string()));
    }
    fs::create_directories(folder, error);
    if (error) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot make the folder {}: {}",
                                                      folder.string(), error.message()));
    }
}

std::string OutputStems::take(const std::string& file) {
    std::string stem = file == kStandardInput ? "stdin" : fs::path(file).stem().string();
    const auto [owner, isNew] = mFileOf.try_emplace(stem, file);
    if (!isNew) {
        throw ProbeError(ExitCode::kUsage,
                         fmt::format("{} has the same name without its suffix, so both would be "
                                     "written to the same place",
                                     owner->second));
    }
    return stem;
}

}  // namespace ogmprobe
