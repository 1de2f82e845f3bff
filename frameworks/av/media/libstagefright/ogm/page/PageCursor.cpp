// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "page/PageCursor.h"

#include <log/log.h>

#include <algorithm>
#include <cinttypes>

#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android::ogm {

media_status_t PageCursor::goToPage(const PageReader& pages, int64_t offset, int64_t maxSkip) {
    int64_t position = 0;
    const media_status_t status = pages.FindPage(offset, &position, maxSkip);
    if (status == AMEDIA_ERROR_END_OF_STREAM) {
        ALOGI("Seek to file end\n");
        enterPageAt(pages.dataSourceSize());
        return AMEDIA_OK;
    }
    if (status != AMEDIA_OK) {
        ALOGI("Cannot find a page start, from 0x%08X in size %d\n", static_cast<uint32_t>(offset),
              static_cast<int>(maxSkip));
        return status;
    }
    // A negative status is stored as a size, so the search for the next page begins that many bytes
    // before this one.
    mCurrentPageSize = pages.readPage(position, &currPage);
    enterPageAt(position);
    return AMEDIA_OK;
}

media_status_t PageCursor::enterNextPage(const PageReader& pages) {
    // The cursor moves past the old page even if no other page is found. A negative size, which is
    // the status of a page header that could not be read, moves it back.
    mCurrentPageOffset = wrapAdd(mCurrentPageOffset, mCurrentPageSize);
    const PageStep step = pages.nextPage(mCurrentPageOffset, &currPage);
    if (!step.isFound) {
        ALOGI("Cannot find a page start,LINE:2222 from 0x%08X\n",
              static_cast<uint32_t>(mCurrentPageOffset));
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    // If the header cannot be read, currPage still has the lacing of the page before, which is then
    // applied to the bytes here.
    mCurrentPageSize = step.size;
    enterPageAt(step.offset);
    return AMEDIA_OK;
}

void PageCursor::enterPageAt(int64_t offset) {
    mCurrentPageOffset = offset;
    mCurrentSegment = 0;
    mCurrentBodyOffset = 0;
}

std::optional<PacketPiece> PageCursor::nextPiece() const {
    if (mCurrentSegment >= currPage.mNumSegments) {
        return std::nullopt;
    }
    const uint8_t* const begin = currPage.mLacing.data() + mCurrentSegment;
    const uint8_t* const end = currPage.mLacing.data() + currPage.mNumSegments;
    const uint8_t* const last =
            std::find_if(begin, end, [](uint8_t lacing) { return lacing != kUnterminated; });
    const auto unterminated = static_cast<size_t>(last - begin);

    PacketPiece piece;
    piece.offset = wrapAdd(mCurrentPageOffset, currPage.headerSize() + mCurrentBodyOffset);
    piece.size = unterminated * kUnterminated;
    piece.nextSegment = mCurrentSegment + unterminated;
    piece.isNewPacket = mCurrentSegment > 0 || (currPage.mFlags & OgmPage::kContinuedPacket) == 0;
    if (last != end) {
        piece.size += *last;
        ++piece.nextSegment;
    }
    return piece;
}

void PageCursor::use(const PacketPiece& piece) {
    mCurrentSegment = piece.nextSegment;
    mCurrentBodyOffset += static_cast<int64_t>(piece.size);
}

media_status_t PageCursor::getNextGranulePosition(const PageReader& pages, uint32_t serialNo,
                                                  uint64_t* granulePosition) const {
    int64_t offset = mCurrentPageOffset;
    int64_t pageSize = mCurrentPageSize;
    OgmPage page;
    do {
        // The length of skipped junk is not added, so the search for the next page begins before
        // the end of this one and reads its last bytes again.
        offset = wrapAdd(offset, pageSize);
        const PageStep step = pages.nextPage(offset, &page);
        if (!step.isFound) {
            ALOGE("getNextGranulePosition: Cannot find a page start,LINE:2175 from 0x%08X\n",
                  static_cast<uint32_t>(offset));
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        if (!step.hasHeader()) {
            ALOGE("getNextGranulePosition:Cannot read a page header, at 0x%08X\n",
                  static_cast<uint32_t>(step.offset));
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        pageSize = step.size;
    } while (page.mSerialNo != serialNo);
    *granulePosition = page.mGranulePosition;
    return AMEDIA_OK;
}

}  // namespace android::ogm
