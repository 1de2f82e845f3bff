// SPDX-License-Identifier: Apache-2.0
#include "Source.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace android::ogm::bench {

namespace {

/** The status with which the platform's file source refuses a read. */
constexpr ssize_t kReadRefused = -2147483648LL;

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

int openFile(const std::string& path, int64_t* size) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        fail(path);
    }
    *size = status.st_size;
    return descriptor;
}

}  // namespace

Source::Source() {
    mTable.handle = this;
    mTable.readAt = [](void* handle, off64_t offset, void* data, size_t size) {
        auto* const self = static_cast<Source*>(handle);
        ++self->mReads;
        return offset < 0 ? kReadRefused : self->readAt(offset, data, size);
    };
    mTable.getSize = [](void* handle, off64_t* size) -> status_t {
        *size = static_cast<Source*>(handle)->size();
        return OK;
    };
    mTable.flags = [](void*) -> uint32_t { return 0; };
    mTable.getUri = [](void*, char*, size_t) { return false; };
}

MappedFile::MappedFile(const std::string& path) {
    int64_t size = 0;
    const int descriptor = openFile(path, &size);
    mSize = static_cast<size_t>(size);
    void* const address = mmap(nullptr, mSize, PROT_READ, MAP_SHARED | MAP_POPULATE, descriptor, 0);
    close(descriptor);
    if (address == MAP_FAILED) {
        fail(path);
    }
    mData = static_cast<const uint8_t*>(address);
}

MappedFile::~MappedFile() {
    munmap(const_cast<uint8_t*>(mData), mSize);
}

ssize_t MemorySource::readAt(int64_t offset, void* data, size_t size) {
    const auto start = static_cast<size_t>(offset);
    if (start >= mSize) {
        return 0;
    }
    const size_t count = std::min(size, mSize - start);
    memcpy(data, mData + start, count);
    return static_cast<ssize_t>(count);
}

FileSource::FileSource(const std::string& path) : mDescriptor(openFile(path, &mSize)) {}

FileSource::~FileSource() {
    close(mDescriptor);
}

ssize_t FileSource::readAt(int64_t offset, void* data, size_t size) {
    const ssize_t count = pread(mDescriptor, data, size, offset);
    return count < 0 ? kReadRefused : count;
}

}  // namespace android::ogm::bench
