// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "page/OgmPage.h"
#include "page/PageReader.h"

namespace android::ogm {

/** A packet, or the part of a packet that is on one page. */
struct PacketPiece {
    /** Offset of the first byte in the file. */
    int64_t offset = 0;
    size_t size = 0;
    /** False for the rest of a packet that began on an earlier page. */
    bool isNewPacket = false;
    /** Index of the lacing value after the piece. */
    uint64_t nextSegment = 0;
};

/**
 * The position of reading in the file: a page, and the next piece on it. All tracks of a file share
 * one cursor.
 *
 * The usual order of calls: goToPage() once; then nextPiece() and use() until isPageUsedUp(), then
 * enterNextPage(), and so on.
 */
class PageCursor {
  public:
    /** False until goToPage() has found a page, or the end of the data. */
    bool isSet() const { return mCurrentPageOffset != 0; }

    const OgmPage& page() const { return currPage; }
    int64_t pageOffset() const { return mCurrentPageOffset; }

    bool isAtPageStart() const { return mCurrentSegment == 0; }
    bool isPageUsedUp() const { return mCurrentSegment == currPage.mNumSegments; }

    /**
     * Goes to the next page at or after `offset`, or to the end of the data if there is none.
     * Returns AMEDIA_OK; or UNSUPPORTED, without a change, if no page begins within `maxSkip` bytes
     * (no limit below 1).
     */
    media_status_t goToPage(const PageReader& pages, int64_t offset, int64_t maxSkip);

    /** Goes to the page after the current one. Returns AMEDIA_OK or END_OF_STREAM. */
    media_status_t enterNextPage(const PageReader& pages);

    /** The next piece; nothing at the end of the page. */
    std::optional<PacketPiece> nextPiece() const;
    /** Moves past `piece`, which nextPiece() returned. */
    void use(const PacketPiece& piece);
    /** Moves to the end of the page. */
    void skipPage() { mCurrentSegment = currPage.mNumSegments; }

    /**
     * Looks up the granule position of the stream's next page after the current page. The cursor
     * does not move. Returns AMEDIA_OK or END_OF_STREAM.
     */
    media_status_t getNextGranulePosition(const PageReader& pages, uint32_t serialNo,
                                          uint64_t* granulePosition) const;

  private:
    void enterPageAt(int64_t offset);

    /** 0 until the cursor is set. */
    int64_t mCurrentPageOffset = 0;
    OgmPage currPage{};
    /** What readPage returned for currPage: a size, or a negative status that is used as a size. */
    int64_t mCurrentPageSize = 0;
    /** Index of currPage's next lacing value. */
    uint64_t mCurrentSegment = 0;
    /** Where its bytes begin in the page's body. */
    int64_t mCurrentBodyOffset = 0;
};

}  // namespace android::ogm
