// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "Platform.h"
#include "Record.h"

namespace android::ogm::trace {

namespace {

constexpr char kDataFolder[] = "/data/";

bool gDataFolderOpen = false;

ssize_t recordWrite(void* /*cookie*/, const char* data, size_t size) {
    record(Kind::kDump, "write %s", contentText(data, size).c_str());
    return static_cast<ssize_t>(size);
}

int recordClose(void* /*cookie*/) {
    record(Kind::kDump, "close");
    return 0;
}

FILE* openRecorded(const char* path, const char* mode) {
    record(Kind::kDump, "open %s with mode %s: %s", path, mode, gDataFolderOpen ? "yes" : "no");
    if (!gDataFolderOpen) {
        errno = EACCES;
        return nullptr;
    }
    cookie_io_functions_t functions{};
    functions.write = recordWrite;
    functions.close = recordClose;
    FILE* const file = fopencookie(nullptr, "w", functions);
    if (file != nullptr) {
        (void)setvbuf(file, nullptr, _IONBF, 0);
    }
    return file;
}

}  // namespace

void setDataFolderOpen(bool open) {
    gDataFolderOpen = open;
}

}  // namespace android::ogm::trace

extern "C" __attribute__((visibility("default"))) FILE* fopen(const char* __restrict path,
                                                              const char* __restrict mode) {
    using namespace android::ogm::trace;
    if (strncmp(path, kDataFolder, strlen(kDataFolder)) == 0) {
        return openRecorded(path, mode);
    }
    static const auto next = reinterpret_cast<decltype(&fopen)>(dlsym(RTLD_NEXT, "fopen"));
    return next(path, mode);
}
