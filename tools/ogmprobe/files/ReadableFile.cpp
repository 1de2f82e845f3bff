// SPDX-License-Identifier: Apache-2.0
#include "files/ReadableFile.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ExitCode.h"

namespace ogmprobe {
namespace {

[[noreturn]] void failToOpen(const char* reason) {
    throw ProbeError(ExitCode::kFile, fmt::format("cannot open: {}", reason));
}

// A plug-in reads at any offset: a pipe or a socket cannot do that.
uint64_t sizeOfSeekable(int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0) {
        failToOpen(std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        failToOpen(std::strerror(EISDIR));
    }
    const off64_t end = lseek64(descriptor, 0, SEEK_END);
    if (end < 0) {
        failToOpen(std::strerror(errno));
    }
    return static_cast<uint64_t>(end);
}

}  // namespace

ReadableFile::ReadableFile(const std::string& path)
    : mDescriptor(open64(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (mDescriptor < 0) {
        failToOpen(std::strerror(errno));
    }
    try {
        mSize = sizeOfSeekable(mDescriptor);
    } catch (const ProbeError&) {
        close(mDescriptor);
        throw;
    }
}

ReadableFile::~ReadableFile() {
    close(mDescriptor);
}

// A system call may return fewer bytes in the middle of a file.
std::optional<size_t> ReadableFile::read(uint64_t offset, std::span<uint8_t> bytes) const {
    const size_t size = std::min<uint64_t>(bytes.size(), sizeFrom(offset));
    size_t done = 0;
    while (done < size) {
        const ssize_t got = pread64(mDescriptor, bytes.data() + done, size - done,
                                    static_cast<off64_t>(offset + done));
        if (got == 0) {
            break;
        }
        if (got > 0) {
            done += static_cast<size_t>(got);
        } else if (errno != EINTR) {
            return {};
        }
    }
    return done;
}

}  // namespace ogmprobe
