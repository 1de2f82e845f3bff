// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>

#include "files/LeftoverFiles.h"

namespace ogmprobe {

/** What to do with a file that stands where a new one is to be. */
enum class Existing { kRefuse, kOverwrite };

/**
 * A file that gets its name only when it is whole. Until then it lies beside its place, under the
 * name with ".part" added; it is removed if it never becomes whole, be it that this object goes or
 * that the program is told to end.
 *
 * All functions throw `ProbeError` with `ExitCode::kFile` when the system refuses.
 */
class NewFile {
  public:
    /** Neither the part nor, later, the whole file replaces another one unless it is to. */
    NewFile(std::filesystem::path path, Existing existing);
    /** Standard output in place of a file: it has no name, and its start cannot be replaced. */
    static std::unique_ptr<NewFile> onStandardOutput();

    /** Whether the start can be replaced later. */
    bool canOverwriteStart() const { return !mPath.empty(); }

    const std::filesystem::path& path() const { return mPath; }
    const std::filesystem::path& partPath() const { return mPartPath; }
    uint64_t size() const { return mSize; }

    /** Adds at the end. */
    void append(std::span<const uint8_t> bytes);
    /** Replaces what stands at the beginning; does nothing where that cannot be done. */
    void overwriteStart(std::span<const uint8_t> bytes);

    // Nothing may be written after either.

    /** The file is whole. */
    void commit();
    /** The file will never be whole, but stays under its ".part" name. */
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

/** Where a file lies until it is whole. */
std::filesystem::path partOf(const std::filesystem::path& path);

/** Throws `ProbeError` if something has the path's name, a dangling link included. */
void requireFree(const std::filesystem::path& path);

}  // namespace ogmprobe
