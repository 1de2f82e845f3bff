// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <algorithm>
#include <utility>

#include "OgmExtractor.h"
#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android {

using ogm::ByteBuffer;
using ogm::wrapAdd;
using ogm::wrapDiv;
using ogm::wrapSub;

namespace {

constexpr int kNextPageSearchLine = 2222;
constexpr int kNextGranuleSearchLine = 2175;

/** A packet, or the piece of one that lies on a page. */
struct PacketPiece {
    size_t size = 0;
    uint64_t nextSegment = 0;
};

/** The piece that begins with the lacing value `segment`, of which there must be one. */
PacketPiece findPiece(const OgmPage& page, uint64_t segment) {
    const uint8_t* const begin = page.mLacing.data() + segment;
    const uint8_t* const end = page.mLacing.data() + page.mNumSegments;
    const uint8_t* const last =
            std::find_if(begin, end, [](uint8_t lacing) { return lacing != ogm::kUnterminated; });
    const auto unterminated = static_cast<size_t>(last - begin);
    const size_t size = unterminated * ogm::kUnterminated;
    if (last == end) {
        return {size, segment + unterminated};
    }
    return {size + *last, segment + unterminated + 1};
}

}  // namespace

media_status_t OgmExtractor::readNextPacket() {
    if (mCurrentPageOffset == 0) {
        (void)seekToPage(mFirstDataPageOffset, 0);
    }
    if (mCurrentSegment == currPage.mNumSegments) {
        if (const media_status_t status = enterNextPage(); status != AMEDIA_OK) {
            return status;
        }
    }
    OgmTrack* const track = findStartedTrack(currPage.mSerialNo);
    if (track != nullptr && mCurrentSegment == 0) {
        if (const media_status_t status = refreshGranules(track); status != AMEDIA_OK) {
            return status;
        }
    }
    if (!mSeekDone) {
        mCurrentSegment = currPage.mNumSegments;
        return AMEDIA_OK;
    }
    if (mCurrentSegment >= currPage.mNumSegments) {
        return AMEDIA_OK;
    }
    return cutPacket(track);
}

media_status_t OgmExtractor::enterNextPage() {
    // The cursor stays behind the old page even if no other is found. A negative size, the status
    // of a page header that could not be read, moves it back.
    mCurrentPageOffset = wrapAdd(mCurrentPageOffset, mCurrentPageSize);
    int64_t pageOffset = 0;
    if (FindPage(mCurrentPageOffset, &pageOffset, 0) != AMEDIA_OK) {
        ALOGI("Cannot find a page start,LINE:%d from 0x%08X\n", kNextPageSearchLine,
              static_cast<uint32_t>(mCurrentPageOffset));
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    mCurrentPageSize = readPage(pageOffset, &currPage);
    // Only a size of 0 counts as a failure. After a failed header the page before is cut once more,
    // by its own lacing, out of what lies here.
    if (mCurrentPageSize == 0) {
        ALOGI("Cannot read a page header, at 0x%08X\n", static_cast<uint32_t>(pageOffset));
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    mCurrentPageOffset = pageOffset;
    rewindPage();
    return AMEDIA_OK;
}

void OgmExtractor::rewindPage() {
    mCurrentSegment = 0;
    mCurrentBodyOffset = 0;
}

OgmTrack* OgmExtractor::findStartedTrack(uint32_t serialNo) const {
    const auto entry = mStartedTracks.find(serialNo);
    return entry == mStartedTracks.end() ? nullptr : entry->second;
}

media_status_t OgmExtractor::refreshGranules(OgmTrack* track) {
    uint64_t next = 0;
    const media_status_t status = getNextGranulePosition(currPage.mSerialNo, &next);
    if (status != AMEDIA_OK) {
        // So the packets of a stream's last page are never handed out.
        ALOGI("getNextGranulePosition fail, return %d", status);
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    uint64_t averagePerPacket = 1;
    if (currPage.mNumPackets >= 2) {
        if (next == 0) {
            ALOGE("getNextGranulePosition failed,set averGranulePosition to 0");
        } else {
            averagePerPacket = wrapDiv(wrapSub(next, currPage.mGranulePosition),
                                       uint64_t{currPage.mNumPackets});
        }
    }
    track->updateGranulePosition(currPage.mGranulePosition, averagePerPacket);
    return AMEDIA_OK;
}

media_status_t OgmExtractor::cutPacket(OgmTrack* track) {
    const PacketPiece piece = findPiece(currPage, mCurrentSegment);
    const bool isNewPacket =
            mCurrentSegment > 0 || (currPage.mFlags & OgmPage::kContinuedPacket) == 0;
    const int64_t offset = wrapAdd(mCurrentPageOffset, currPage.headerSize() + mCurrentBodyOffset);
    if (offset > mDataSourceSize) {
        return AMEDIA_ERROR_END_OF_STREAM;
    }
    ByteBuffer own;
    if (track != nullptr) {
        own = track->makePiece(piece.size);
    } else {
        mPassingPiece.reset(piece.size);
    }
    ByteBuffer& bytes = track != nullptr ? own : mPassingPiece;
    const ssize_t count = mDataSource->readAt(offset, bytes.data(), piece.size);
    if (count != static_cast<ssize_t>(piece.size)) {
        ALOGI("Cannot read page payload, size %d\n", static_cast<int>(piece.size));
        return AMEDIA_ERROR_IO;
    }
    mCurrentSegment = piece.nextSegment;
    mCurrentBodyOffset += static_cast<int64_t>(piece.size);
    if (track != nullptr) {
        (void)track->appendData(&bytes, isNewPacket);
        track->giveBack(std::move(own));
    }
    return AMEDIA_OK;
}

media_status_t OgmExtractor::getNextGranulePosition(uint32_t serialNo, uint64_t* granulePosition) {
    int64_t offset = mCurrentPageOffset;
    int64_t pageSize = mCurrentPageSize;
    OgmPage page;
    do {
        // Junk that was skipped in front of a page is not counted in, so the search for the next
        // one begins before that page's end and passes over its last bytes again.
        offset = wrapAdd(offset, pageSize);
        int64_t pageOffset = 0;
        if (FindPage(offset, &pageOffset, 0) != AMEDIA_OK) {
            ALOGE("getNextGranulePosition: Cannot find a page start,LINE:%d from 0x%08X\n",
                  kNextGranuleSearchLine, static_cast<uint32_t>(offset));
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        pageSize = readPage(pageOffset, &page);
        if (pageSize < 1) {
            ALOGE("getNextGranulePosition:Cannot read a page header, at 0x%08X\n",
                  static_cast<uint32_t>(pageOffset));
            return AMEDIA_ERROR_END_OF_STREAM;
        }
    } while (page.mSerialNo != serialNo);
    *granulePosition = page.mGranulePosition;
    return AMEDIA_OK;
}

}  // namespace android
