// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "explain/OggFile.h"
#include "files/InputFiles.h"
#include "files/ReadableFile.h"

namespace ogmprobe {

/** Finds and reads the pages of a file (RFC 3533, section 6). */
class OggScanner {
  public:
    /** Throws `ProbeError` with `kFile`. */
    explicit OggScanner(const std::string& path) : mFile(pathToOpen(path)) {}

    uint64_t size() const { return mFile.size(); }
    /**
     * Returns the offset of the first capture pattern from the offset on; the file's size if there
     * is none.
     */
    uint64_t findPage(uint64_t offset);
    /**
     * Returns the page whose capture pattern is there. Adds its pieces; their page index is not
     * set.
     */
    OggPage page(uint64_t offset, std::vector<OggPiece>& pieces);
    /** Returns the bytes, as many as the file has; valid until the next call. */
    std::span<const uint8_t> bytes(uint64_t offset, size_t count);

  private:
    ReadableFile mFile;
    std::vector<uint8_t> mWindow;
    uint64_t mWindowOffset = 0;
};

}  // namespace ogmprobe
