// SPDX-License-Identifier: Apache-2.0
#include "files/NewFile.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "ExitCode.h"
#include "console/Output.h"

namespace ogmprobe {
namespace {

constexpr mode_t kModeBeforeMask = 0666;

// Links are not followed.
void requireNoFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw ProbeError(ExitCode::kFile, fmt::format("{} is a folder, not a file", path.string()));
    }
}

std::FILE* create(const std::filesystem::path& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                kModeBeforeMask);
    return descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
}

bool renameOverNothing(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return true;
    }
    // Not every file system can do this in one step.
    return errno == EINVAL && access(to, F_OK) != 0 && std::rename(from, to) == 0;
}

}  // namespace

NewFile::NewFile(std::filesystem::path path, Existing existing)
    : mPath(std::move(path)), mPartPath(partOf(mPath)), mExisting(existing) {
    if (mExisting == Existing::kOverwrite) {
        requireNoFolder(mPath);
        std::remove(mPartPath.c_str());
    } else {
        requireFree(mPath);
        requireFree(mPartPath);
    }
    const HeldSignals held;
    mFile.reset(create(mPartPath));
    if (mFile == nullptr) {
        fail();
    }
    mLeftover.watch(mPartPath.c_str());
}

NewFile::NewFile() : mExisting(Existing::kRefuse), mFile(fdopen(dup(STDOUT_FILENO), "wb")) {
    if (mFile == nullptr) {
        fail();
    }
}

std::unique_ptr<NewFile> NewFile::onStandardOutput() {
    return std::unique_ptr<NewFile>(new NewFile());
}

void NewFile::append(std::span<const uint8_t> bytes) {
    write(bytes);
    mSize += bytes.size();
}

void NewFile::overwriteStart(std::span<const uint8_t> bytes) {
    if (!canOverwriteStart()) {
        return;
    }
    if (std::fseek(mFile.get(), 0, SEEK_SET) != 0) {
        fail();
    }
    write(bytes);
    if (std::fseek(mFile.get(), 0, SEEK_END) != 0) {
        fail();
    }
}

void NewFile::commit() {
    close();
    if (mPath.empty()) {
        return;
    }
    const bool done = mExisting == Existing::kOverwrite
                              ? std::rename(mPartPath.c_str(), mPath.c_str()) == 0
                              : renameOverNothing(mPartPath.c_str(), mPath.c_str());
    if (!done) {
        requireFree(mPath);
        fail();
    }
    mLeftover.forget();
}

void NewFile::keepPart() {
    close();
    mLeftover.forget();
}

void NewFile::write(std::span<const uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), mFile.get()) != bytes.size()) {
        fail();
    }
}

// Closing writes what is still buffered, and may find the disk full.
void NewFile::close() {
    if (std::fclose(mFile.release()) != 0) {
        fail();
    }
}

void NewFile::fail() const {
    if (mPath.empty() && errno == EPIPE) {
        throw OutputClosed("the reader of the output is gone");
    }
    if (mPath.empty()) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot write the output: {}", std::strerror(errno)));
    }
    throw ProbeError(ExitCode::kFile,
                     fmt::format("cannot write {}: {}", mPartPath.string(), std::strerror(errno)));
}

std::filesystem::path partOf(const std::filesystem::path& path) {
    return path.string() + ".part";
}

void requireFree(const std::filesystem::path& path) {
    std::error_code ignored;
    requireNoFolder(path);
    if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} exists; --force overwrites it", path.string()));
    }
}

}  // namespace ogmprobe
