// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>

namespace ogmprobe {

/**
 * A file that gets its name only when it is whole. Until then it lies beside its place, under the
 * name with ".part" added, and stays there if it never becomes whole.
 *
 * All functions throw `ProbeError` with `ExitCode::kFile` when the system refuses.
 */
class NewFile {
  public:
    explicit NewFile(std::filesystem::path path);

    const std::filesystem::path& path() const { return mPath; }
    const std::filesystem::path& partPath() const { return mPartPath; }
    uint64_t size() const { return mSize; }

    /** Adds at the end. */
    void append(std::span<const uint8_t> bytes);
    /** Replaces what stands at the beginning. */
    void overwriteStart(std::span<const uint8_t> bytes);
    /** The file is whole: nothing may be written after this. */
    void commit();

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void write(std::span<const uint8_t> bytes);
    [[noreturn]] void fail() const;

    const std::filesystem::path mPath;
    const std::filesystem::path mPartPath;
    std::unique_ptr<std::FILE, Close> mFile;
    uint64_t mSize = 0;
};

}  // namespace ogmprobe
