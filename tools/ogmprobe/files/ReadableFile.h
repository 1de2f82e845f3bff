// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

/** A local file that can be read at any offset. */
class ReadableFile {
  public:
    /** Throws `ProbeError` with `ExitCode::kFile` when the file cannot be opened for reading. */
    explicit ReadableFile(const std::string& path);
    ~ReadableFile();

    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;

    /** Returns the size when the file was opened, in bytes. */
    uint64_t size() const { return mSize; }
    /** Returns how many of these bytes are at the offset and after it. */
    uint64_t sizeFrom(uint64_t offset) const { return offset < mSize ? mSize - offset : 0; }

    /**
     * Reads the bytes from the offset on, up to that size. Returns their number, which is smaller
     * than requested only at the end of the file. Returns nothing after an error, which `errno`
     * then holds.
     */
    std::optional<size_t> read(uint64_t offset, std::span<uint8_t> bytes) const;

  private:
    int mDescriptor;
    uint64_t mSize = 0;
};

}  // namespace ogmprobe
