// SPDX-License-Identifier: Apache-2.0
#include "DumpFile.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>

namespace android::ogm::test {
namespace {

std::mutex gMutex;
bool gRedirecting = false;
bool gFailing = false;
std::string gTemporaryPath;
std::vector<std::string> gModes;

using Fopen = FILE* (*)(const char*, const char*);

FILE* openRedirected(Fopen next, const char* path, const char* mode) {
    const std::lock_guard lock(gMutex);
    if (!gRedirecting || strcmp(path, kAudioDumpPath) != 0) {
        return next(path, mode);
    }
    gModes.emplace_back(mode);
    if (gFailing) {
        errno = EACCES;
        return nullptr;
    }
    return next(gTemporaryPath.c_str(), mode);
}

}  // namespace

DumpFile::DumpFile(Opening opening) {
    const std::lock_guard lock(gMutex);
    if (gRedirecting) {
        throw std::logic_error("the dump file is already redirected");
    }
    const char* directory = getenv("TMPDIR");
    std::string path = std::string(directory != nullptr ? directory : "/tmp") + "/ogm_dump_XXXXXX";
    const int descriptor = mkstemp(path.data());
    if (descriptor < 0) {
        throw std::runtime_error("cannot make a temporary file");
    }
    close(descriptor);
    gTemporaryPath = path;
    gModes.clear();
    gFailing = opening == Opening::kFails;
    gRedirecting = true;
}

DumpFile::~DumpFile() {
    const std::lock_guard lock(gMutex);
    gRedirecting = false;
    unlink(gTemporaryPath.c_str());
}

Bytes DumpFile::contents() const {
    std::ifstream stream(gTemporaryPath, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

std::vector<std::string> DumpFile::modes() const {
    const std::lock_guard lock(gMutex);
    return gModes;
}

}  // namespace android::ogm::test

// Replaces the function of the C library, or of a sanitizer, in the whole program.
extern "C" __attribute__((visibility("default"))) FILE* fopen(const char* __restrict path,
                                                              const char* __restrict mode) {
    using android::ogm::test::Fopen;
    static const auto next = reinterpret_cast<Fopen>(dlsym(RTLD_NEXT, "fopen"));
    return android::ogm::test::openRedirected(next, path, mode);
}
