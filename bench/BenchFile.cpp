// SPDX-License-Identifier: Apache-2.0
#include "BenchFile.h"

#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace android::ogm::bench {

void writeFile(const Content& content, size_t size, const std::filesystem::path& path) {
    std::ofstream file(path, std::ios::binary);
    writePages(content, size, [&file](const uint8_t* data, size_t count) {
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(count));
    });
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

BenchFile::BenchFile(const Content& content, size_t size)
    : mPath(std::filesystem::temp_directory_path() /
            (content.name + "." + std::to_string(getpid()) + ".ogm")) {
    try {
        writeFile(content, size, mPath);
        mMapped = std::make_unique<MappedFile>(mPath);
        mContents = walkWithLibogg(*mMapped);
    } catch (...) {
        std::filesystem::remove(mPath);
        throw;
    }
}

BenchFile::~BenchFile() {
    std::error_code ignored;
    std::filesystem::remove(mPath, ignored);
}

}  // namespace android::ogm::bench
