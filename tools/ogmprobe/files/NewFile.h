// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>

#include "files/LeftoverFiles.h"

namespace ogmprobe {

/** What to do if the path of a new file exists. */
enum class Existing { kRefuse, kOverwrite };

/**
 * A file that gets its name only when it is complete. Until then its name has ".part" appended. If
 * it is never completed, it is removed with this object, or when a signal ends the program.
 *
 * All functions throw `ProbeError` with `ExitCode::kFile` if the system refuses.
 */
class NewFile {
  public:
    /**
     * Neither the ".part" file nor, later, the complete file replaces another file unless
     * `existing` allows it.
     */
    NewFile(std::filesystem::path path, Existing existing);
    /** Returns standard output as a file without a name, whose start cannot be replaced. */
    static std::unique_ptr<NewFile> onStandardOutput();

    /** Returns whether the start can be replaced later. */
    bool canOverwriteStart() const { return !mPath.empty(); }

    const std::filesystem::path& path() const { return mPath; }
    const std::filesystem::path& partPath() const { return mPartPath; }
    uint64_t size() const { return mSize; }

    /** Appends bytes. */
    void append(std::span<const uint8_t> bytes);
    /** Replaces bytes at the beginning; does nothing if that is impossible. */
    void overwriteStart(std::span<const uint8_t> bytes);

    // After either of these, nothing may be written.

    /** Gives the complete file its name. */
    void commit();
    /** The file will not be completed, but is kept under its ".part" name. */
    void keepPart();

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    NewFile();

    void write(std::span<const uint8_t> bytes);
    void close();
    [[noreturn]] void fail() const;

    const std::filesystem::path mPath;
    const std::filesystem::path mPartPath;
    const Existing mExisting;
    std::unique_ptr<std::FILE, Close> mFile;
    LeftoverFile mLeftover;
    uint64_t mSize = 0;
};

/** Where a file is written until it is complete. */
std::filesystem::path partOf(const std::filesystem::path& path);

/** Throws `ProbeError` if the path exists, even as a dangling link. */
void requireFree(const std::filesystem::path& path);

}  // namespace ogmprobe
