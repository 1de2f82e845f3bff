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

/** The result of PageReader::nextPage(). */
struct PageStep {
    /** Whether a capture pattern was found. If so, it is at `offset`. */
    bool isFound = false;
    int64_t offset = 0;
    /** Of the whole page in bytes, or the negative status of readPage(). */
    int64_t size = 0;

    bool hasHeader() const { return size > 0; }
    /** Offset of the first byte after the page. */
    int64_t end() const { return wrapAdd(offset, size); }
};

/**
 * Reads the pages of a file. It owns the data source and has no position: callers pass the offset,
 * and log if nothing is found there.
 */
class PageReader {
  public:
    explicit PageReader(std::unique_ptr<DataSourceHelper> dataSource)
        : mDataSource(std::move(dataSource)) {}

    /** Gets the source's size. */
    void readDataSourceSize();
    /** In bytes, as the source stored it; 0 before readDataSourceSize(). */
    int64_t dataSourceSize() const { return mDataSourceSize; }

    /**
     * Reads the page header at `offset` into `page`. Returns the size of the whole page in bytes,
     * or a negative media_status_t: MALFORMED without capture pattern or with undefined flags,
     * UNSUPPORTED for another version, IO if the header or the lacing table is cut off. Of these
     * failures only a cut-off lacing table changes `page`.
     */
    int64_t readPage(int64_t offset, OgmPage* page) const;

    /**
     * Searches for the next capture pattern at or after `offset`, byte by byte. Returns AMEDIA_OK,
     * END_OF_STREAM at the end of the data, or UNSUPPORTED if none begins within `maxSkip` bytes
     * (no limit below 1). On failure `foundOffset` is 0.
     */
    media_status_t FindPage(int64_t offset, int64_t* foundOffset, int64_t maxSkip) const;

    /** Searches from `offset` on without a limit and reads the header of the page found. */
    PageStep nextPage(int64_t offset, OgmPage* page) const;

    /** Reads bytes of a page's body. Returns whether all `size` bytes were read. */
    bool readBody(int64_t offset, void* data, size_t size) const;

  private:
    const std::unique_ptr<DataSourceHelper> mDataSource;
    int64_t mDataSourceSize = 0;
};

}  // namespace android::ogm
