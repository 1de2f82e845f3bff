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
    // A negative status passes for a size: the next page is then searched for before this one,
    // by as many bytes as the status says.
    mCurrentPageSize = pages.readPage(position, &currPage);
    enterPageAt(position);
    return AMEDIA_OK;
}

media_status_t PageCursor::enterNextPage(const PageReader& pages) {
    // The cursor stays after the old page even if no other is found. A negative size, the status of
    // a page header that could not be read, moves it back.
    mCurrentPageOffset = wrapAdd(mCurrentPageOffset, mCurrentPageSize);
    const PageStep step = pages.nextPage(mCurrentPageOffset, &currPage);
    if (!step.isFound) {
        ALOGI("Cannot find a page start,LINE:2222 from 0x%08X\n",
              static_cast<uint32_t>(mCurrentPageOffset));
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    // After a failed header the page before is cut once more, by its own lacing, out of what lies
    // here.
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
        // Junk that was skipped before a page is not added, so the search for the next one
        // begins before that page's end and passes over its last bytes again.
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
