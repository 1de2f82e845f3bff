// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>

#include "files/ReadableFile.h"
#include "plugin/BlockCache.h"
#include "plugin/ReadWatch.h"
#include "plugin/RepeatedSearch.h"

namespace ogmprobe {

/**
 * A local file as the framework passes it to a plug-in. Counts what is read from it.
 *
 * The counts are those of the plug-in's reads, even if bytes come from memory. Not for several
 * threads.
 */
class FileSource {
  public:
    /** Throws `ProbeError` with `ExitCode::kFile` when the file cannot be opened for reading. */
    explicit FileSource(const std::string& path);

    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    /** Returns the table for the plug-in; valid as long as this object. */
    android::CDataSource* table() { return &mTable; }

    /**
     * Shortens repeated searches of the plug-in. If a search begins like an earlier one that found
     * nothing up to the end of the file, its next read gets the result of that search's last read.
     * A search through the same junk as the previous one is shortened too (see `RepeatedSearch`);
     * one log line says how often. All reads that the searches would have made are counted and
     * recorded. This is correct for a plug-in whose searches depend only on the bytes, stop at the
     * first short read, and continue after junk as described there.
     */
    void shortenRepeatedSearches() { mShortens = true; }

    /** Return the calls of `readAt` so far, and the bytes they returned. */
    uint64_t reads() const { return mReads + mSearchReads; }
    uint64_t bytesRead() const { return mBytesRead + mSearchReads * kSearchedSize; }

    /** Returns where the last read that returned bytes ended. */
    uint64_t readUpTo() const { return mReadUpTo; }

    uint64_t size() const { return mFile.size(); }

    /** Returns the first system error of a read, as an `errno` value; 0 without one. */
    int error() const { return mError; }

  private:
    /** The number of bytes that a plug-in reads at each offset to find the beginning of a page. */
    static constexpr size_t kSearchedSize = 4;
    /**
     * After this many equal reads, searches that begin at the same offset are considered equal.
     */
    static constexpr uint64_t kLongSearch = 1 << 20;
    /** Before every valid offset. */
    static constexpr off64_t kNoSearch = std::numeric_limits<off64_t>::min();

    /**
     * Does a read of that size if it continues a search. It has to be fast: a large file of zeros
     * takes a thousand million of them.
     */
    bool searchOn(off64_t offset, void* data) {
        if (!ReadWatch::continues(offset) || offset >= mSearchEnd) {
            return false;
        }
        std::memcpy(data, mSearched + (offset - mSearchBegin), kSearchedSize);
        ReadWatch::goOn(offset);
        ++mSearchReads;
        mReadUpTo = static_cast<uint64_t>(offset) + kSearchedSize;
        return true;
    }

    ssize_t readAt(off64_t offset, void* data, size_t size);
    off64_t offsetToRead(off64_t offset, bool searches);
    off64_t beginSearch(off64_t offset);
    void logRepeatedSearch();
    void noteRead(off64_t offset, std::span<const uint8_t> bytes);
    ssize_t readUncounted(off64_t offset, uint8_t* data, size_t size);
    bool readFromBlocks(uint64_t offset, std::span<uint8_t> bytes);
    void searchOnFrom(off64_t offset, size_t size, ssize_t got);
    static bool isLongSearch(off64_t offset);
    void noteEndOfSearch(off64_t offset, size_t size, ssize_t got);
    off64_t endOfVainSearch(off64_t offset);

    static android::CDataSource makeTable(FileSource* source);

    ReadableFile mFile;
    BlockCache mBlocks{mFile};
    uint64_t mReadUpTo = 0;
    uint64_t mReads = 0;
    uint64_t mSearchReads = 0;
    /** The bytes from `mSearchBegin` on, for reads that begin before `mSearchEnd`. */
    const uint8_t* mSearched = nullptr;
    off64_t mSearchBegin = 0;
    off64_t mSearchEnd = kNoSearch;
    uint64_t mBytesRead = 0;
    bool mShortens = false;
    RepeatedSearch mRepeated;
    /** The first and the last, short read of the latest search that reached the end of the file. */
    off64_t mVainSearchBegin = kNoSearch;
    off64_t mVainSearchEnd = kNoSearch;
    int mError = 0;
    android::CDataSource mTable;
};

}  // namespace ogmprobe
