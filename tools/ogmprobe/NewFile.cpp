// SPDX-License-Identifier: Apache-2.0
#include "NewFile.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "ExitCode.h"

namespace ogmprobe {

NewFile::NewFile(std::filesystem::path path)
    : mPath(std::move(path)),
      mPartPath(mPath.string() + ".part"),
      mFile(std::fopen(mPartPath.c_str(), "wb")) {
    if (mFile == nullptr) {
        fail();
    }
}

void NewFile::append(std::span<const uint8_t> bytes) {
    write(bytes);
    mSize += bytes.size();
}

void NewFile::overwriteStart(std::span<const uint8_t> bytes) {
    if (std::fseek(mFile.get(), 0, SEEK_SET) != 0) {
        fail();
    }
    write(bytes);
    if (std::fseek(mFile.get(), 0, SEEK_END) != 0) {
        fail();
    }
}

void NewFile::commit() {
    // Closing writes what is still buffered, and may find the disk full.
    if (std::fclose(mFile.release()) != 0 || std::rename(mPartPath.c_str(), mPath.c_str()) != 0) {
        fail();
    }
}

void NewFile::write(std::span<const uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), mFile.get()) != bytes.size()) {
        fail();
    }
}

void NewFile::fail() const {
    throw ProbeError(ExitCode::kFile,
                     fmt::format("cannot write {}: {}", mPartPath.string(), std::strerror(errno)));
}

}  // namespace ogmprobe
