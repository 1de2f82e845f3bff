// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Content.h"
#include "Source.h"
#include "Walks.h"

namespace android::ogm::bench {

/** Writes the content's pages to a file. */
void writeFile(const Content& content, size_t size, const std::filesystem::path& path);

/** A generated file with what the benchmarks need to know about it; deleted with the object. */
class BenchFile {
  public:
    BenchFile(const Content& content, size_t size);
    ~BenchFile();
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;

    const std::string& path() const { return mPath; }
    const MappedFile& mapped() const { return *mMapped; }
    const WalkResult& contents() const { return mContents; }

  private:
    std::string mPath;
    std::unique_ptr<MappedFile> mMapped;
    WalkResult mContents;
};

/** The sizes of the files that the benchmarks read. */
struct BenchSizes {
    size_t file;
    /** Of the short and the long file whose costs per buffer are compared. */
    int64_t shortFile;
    int64_t longFile;
};

void registerFileBenchmarks(const BenchSizes& sizes);
void registerPartBenchmarks();

}  // namespace android::ogm::bench
