// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <cstdint>
#include <string>

namespace ogmprobe {

/**
 * A local file as the framework hands it to a plug-in, with a count of what is read from it.
 *
 * Reads are exact (no read-ahead), so the counts are the plug-in's own. Not for several threads.
 */
class FileSource {
  public:
    /** Throws `ProbeError` with `ExitCode::kFile` when the file cannot be opened for reading. */
    explicit FileSource(const std::string& path);
    ~FileSource();

    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    /** The table to hand to the plug-in; lives as long as this object. */
    android::CDataSource* table() { return &mTable; }

    /** Calls of `readAt`, and the bytes they gave, since this object was made. */
    uint64_t reads() const { return mReads; }
    uint64_t bytesRead() const { return mBytesRead; }

    /** Where the last read that gave something ended. */
    uint64_t readUpTo() const { return mReadUpTo; }

    uint64_t size() const { return static_cast<uint64_t>(mSize); }

    /** The first error of the operating system in a read, as an `errno` value; 0 without one. */
    int error() const { return mError; }

  private:
    ssize_t readAt(off64_t offset, void* data, size_t size);
    ssize_t readWhole(off64_t offset, uint8_t* data, size_t size);

    static android::CDataSource makeTable(FileSource* source);

    int mDescriptor = -1;
    off64_t mSize = 0;
    uint64_t mReadUpTo = 0;
    uint64_t mReads = 0;
    uint64_t mBytesRead = 0;
    int mError = 0;
    android::CDataSource mTable;
};

}  // namespace ogmprobe
