// SPDX-License-Identifier: Apache-2.0
#include "files/InputFiles.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>

#include "ExitCode.h"
#include "files/Descriptor.h"
#include "files/LeftoverFiles.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

constexpr size_t kBlockSize = 1 << 16;

[[noreturn]] void failToSpool() {
    throw ProbeError(ExitCode::kFile,
                     fmt::format("cannot keep standard input in {}: {}",
                                 fs::temp_directory_path().string(), std::strerror(errno)));
}

/** A temporary file with all that standard input had. */
class SpooledInput {
  public:
    SpooledInput() : mPath((fs::temp_directory_path() / "ogmprobe.XXXXXX").string()) {
        const Descriptor file = makeFile();
        copyInto(file.get());
    }

    const std::string& path() const { return mPath; }

  private:
    Descriptor makeFile() {
        const HeldSignals held;
        Descriptor file(mkostemp(mPath.data(), O_CLOEXEC));
        if (file.get() < 0) {
            failToSpool();
        }
        mLeftover.watch(mPath.c_str());
        return file;
    }

    static void copyInto(int file) {
        std::array<char, kBlockSize> block;
        for (;;) {
            const ssize_t got = read(STDIN_FILENO, block.data(), block.size());
            if (got == 0) {
                return;
            }
            if (got > 0) {
                writeWhole(file, block.data(), static_cast<size_t>(got));
            } else if (errno != EINTR) {
                throw ProbeError(ExitCode::kFile, fmt::format("cannot read standard input: {}",
                                                              std::strerror(errno)));
            }
        }
    }

    static void writeWhole(int file, const char* bytes, size_t size) {
        while (size > 0) {
            const ssize_t written = write(file, bytes, size);
            if (written >= 0) {
                bytes += written;
                size -= static_cast<size_t>(written);
            } else if (errno != EINTR) {
                failToSpool();
            }
        }
    }

    std::string mPath;
    LeftoverFile mLeftover;
};

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
    if (name != kStandardInput) {
        return name;
    }
    static const SpooledInput input;
    return input.path();
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
