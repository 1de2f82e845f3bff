// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "base/Wrap.h"
#include "page/OgmPage.h"

namespace android::ogm {

/** Where PageReader::nextPage() got to. */
struct PageStep {
    /** Whether a capture pattern was found, at `offset`. */
    bool isFound = false;
    int64_t offset = 0;
    /** Of the whole page in bytes, or what readPage() reports for a header that is damaged. */
    int64_t size = 0;

    bool hasHeader() const { return size > 0; }
    /** The first byte after the page. */
    int64_t end() const { return wrapAdd(offset, size); }
};

/**
 * Reads the pages of a file. It owns the data source and keeps no position: callers say where to
 * read, and report in the log what they did not find.
 */
class PageReader {
  public:
    explicit PageReader(std::unique_ptr<DataSourceHelper> dataSource)
        : mDataSource(std::move(dataSource)) {}

    /** Asks the source for its size. */
    void readDataSourceSize();
    /** In bytes, whatever the source reported; 0 before it was asked. */
    int64_t dataSourceSize() const { return mDataSourceSize; }

    /**
     * Reads the page header at `offset` (the start of a page) into `page`.
     * Returns the size of the whole page in bytes, or a negative media_status_t: MALFORMED without
     * capture pattern or with undefined flags, UNSUPPORTED for another version, IO when the header
     * or the lacing table is cut off. Of the failures only that of the lacing table changes `page`.
     */
    int64_t readPage(int64_t offset, OgmPage* page) const;

    /**
     * Searches for the next capture pattern at or after `offset`, byte by byte.
     * Returns AMEDIA_OK, END_OF_STREAM at the end of the data, or UNSUPPORTED when none begins
     * within `maxSkip` bytes (no limit below 1); `foundOffset` is 0 then.
     */
    media_status_t FindPage(int64_t offset, int64_t* foundOffset, int64_t maxSkip) const;

    /** Searches from `offset` on without a limit, and reads the header of the page found. */
    PageStep nextPage(int64_t offset, OgmPage* page) const;

    /** Reads bytes of a page's body. Returns whether all `size` bytes could be read. */
    bool readBody(int64_t offset, void* data, size_t size) const;

  private:
    const std::unique_ptr<DataSourceHelper> mDataSource;
    int64_t mDataSourceSize = 0;
};

}  // namespace android::ogm
