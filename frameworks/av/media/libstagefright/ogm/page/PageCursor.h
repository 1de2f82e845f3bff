// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "page/OgmPage.h"
#include "page/PageReader.h"

namespace android::ogm {

/** A packet, or the part of one that lies on one page. */
struct PacketPiece {
    /** Of its first byte in the file. */
    int64_t offset = 0;
    size_t size = 0;
    /** Clear for the rest of a packet that began on an earlier page. */
    bool isNewPacket = false;
    /** The lacing value after those of the piece. */
    uint64_t nextSegment = 0;
};

/**
 * The place in the file that reading has reached: a page, and which of its pieces comes next. All
 * tracks of a file share one.
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
     * Goes to the next page at or after `offset`, and to the end of the data when there is none.
     * Returns AMEDIA_OK, or UNSUPPORTED (nothing changed) when no page begins within `maxSkip`
     * bytes (no limit below 1).
     */
    media_status_t goToPage(const PageReader& pages, int64_t offset, int64_t maxSkip);

    /** Goes to the page after the current one. Returns AMEDIA_OK or END_OF_STREAM. */
    media_status_t enterNextPage(const PageReader& pages);

    /** The piece that comes next; nothing at the end of the page. */
    std::optional<PacketPiece> nextPiece() const;
    /** Moves on to what follows `piece`, which nextPiece() returned. */
    void use(const PacketPiece& piece);
    /** Moves on to the end of the page. */
    void skipPage() { mCurrentSegment = currPage.mNumSegments; }

    /**
     * Looks up the granule position of the next page of a stream after the current page, without
     * moving. Returns AMEDIA_OK or END_OF_STREAM.
     */
    media_status_t getNextGranulePosition(const PageReader& pages, uint32_t serialNo,
                                          uint64_t* granulePosition) const;

  private:
    void enterPageAt(int64_t offset);

    /** 0 until the cursor has been set. */
    int64_t mCurrentPageOffset = 0;
    OgmPage currPage{};
    /** What readPage returned for currPage: a size, or a negative status that is taken for one. */
    int64_t mCurrentPageSize = 0;
    /** Next lacing value of currPage to use. */
    uint64_t mCurrentSegment = 0;
    /** Where its bytes begin in the body of currPage. */
    int64_t mCurrentBodyOffset = 0;
};

}  // namespace android::ogm
