// SPDX-License-Identifier: Apache-2.0
#include "plugin/FileSource.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utils/Errors.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ExitCode.h"
#include "plugin/PluginCall.h"
#include "records/Trace.h"

namespace ogmprobe {
namespace {

// The flag by which the framework marks a local file.
constexpr uint32_t kIsLocalFile = 16;

[[noreturn]] void failToOpen(const char* reason) {
    throw ProbeError(ExitCode::kFile, fmt::format("cannot open: {}", reason));
}

// A plug-in jumps about in its file: a pipe or a socket cannot serve it.
off64_t sizeOfSeekable(int descriptor) {
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
    return end;
}

}  // namespace

FileSource::FileSource(const std::string& path) : mTable(makeTable(this)) {
    mDescriptor = open64(path.c_str(), O_RDONLY | O_CLOEXEC);
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

FileSource::~FileSource() {
    close(mDescriptor);
}

ssize_t FileSource::readAt(off64_t offset, void* data, size_t size) {
    ++mReads;
    if (offset < 0) {
        return android::UNKNOWN_ERROR;
    }
    if (offset >= mSize) {
        return 0;
    }
    const size_t available = std::min(size, static_cast<size_t>(mSize - offset));
    const ssize_t got = readWhole(offset, static_cast<uint8_t*>(data), available);
    if (got > 0) {
        mBytesRead += static_cast<uint64_t>(got);
        mReadUpTo = static_cast<uint64_t>(offset + got);
    }
    return got;
}

// One system call may give less than asked for in the middle of a file, which would look like its
// end to the plug-in.
ssize_t FileSource::readWhole(off64_t offset, uint8_t* data, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t got =
                pread64(mDescriptor, data + done, size - done, offset + static_cast<off64_t>(done));
        if (got == 0) {
            break;
        }
        if (got > 0) {
            done += static_cast<size_t>(got);
        } else if (errno != EINTR) {
            mError = mError != 0 ? mError : errno;
            return android::UNKNOWN_ERROR;
        }
    }
    return static_cast<ssize_t>(done);
}

android::CDataSource FileSource::makeTable(FileSource* source) {
    android::CDataSource table = {};
    table.handle = source;
    table.readAt = [](void* handle, off64_t offset, void* data, size_t size) -> ssize_t {
        const ssize_t got = static_cast<FileSource*>(handle)->readAt(offset, data, size);
        PluginCall::noteProgress();
        Trace::add<SourceRead>(offset, size, got);
        return got;
    };
    table.getSize = [](void* handle, off64_t* size) -> android::status_t {
        *size = static_cast<FileSource*>(handle)->mSize;
        return android::OK;
    };
    table.flags = [](void*) -> uint32_t { return kIsLocalFile; };
    table.getUri = [](void*, char* uri, size_t size) -> bool {
        if (size == 0) {
            return false;
        }
        *uri = '\0';
        return true;
    };
    return table;
}

}  // namespace ogmprobe
