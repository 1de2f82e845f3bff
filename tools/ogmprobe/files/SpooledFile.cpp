// SPDX-License-Identifier: Apache-2.0
#include "files/SpooledFile.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "ExitCode.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

constexpr size_t kBlockSize = 1 << 16;

[[noreturn]] void fail(const std::string& message) {
    throw ProbeError(ExitCode::kFile, message);
}

[[noreturn]] void failToKeep(const std::string& name) {
    fail(fmt::format("cannot keep {} in {}: {}", name, fs::temp_directory_path().string(),
                     std::strerror(errno)));
}

void writeWhole(int file, const char* bytes, size_t size, const std::string& name) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written >= 0) {
            bytes += written;
            size -= static_cast<size_t>(written);
        } else if (errno != EINTR) {
            failToKeep(name);
        }
    }
}

void copy(int pipe, int file, const std::string& name, uint64_t limit) {
    std::array<char, kBlockSize> block;
    uint64_t size = 0;
    for (;;) {
        const ssize_t got = read(pipe, block.data(), block.size());
        if (got == 0) {
            return;
        }
        if (got < 0) {
            if (errno != EINTR) {
                fail(fmt::format("cannot read {}: {}", name, std::strerror(errno)));
            }
            continue;
        }
        size += static_cast<uint64_t>(got);
        if (size > limit) {
            fail(fmt::format("{} has more than {}: save it in a file", name, sizeText(limit)));
        }
        writeWhole(file, block.data(), static_cast<size_t>(got), name);
    }
}

}  // namespace

SpooledFile::SpooledFile(int pipe, const std::string& name, uint64_t limit)
    : mPath((fs::temp_directory_path() / "ogmprobe.XXXXXX").string()) {
    const Descriptor file = makeFile(name);
    copy(pipe, file.get(), name, limit);
}

Descriptor SpooledFile::makeFile(const std::string& name) {
    const HeldSignals held;
    Descriptor file(mkostemp(mPath.data(), O_CLOEXEC));
    if (file.get() < 0) {
        failToKeep(name);
    }
    mLeftover.watch(mPath.c_str());
    return file;
}

}  // namespace ogmprobe
