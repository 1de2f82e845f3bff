// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmExtractor.h"
#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android {

using ogm::ByteView;
using ogm::wrapAdd;
using ogm::wrapSub;

namespace {

constexpr uint8_t kFirstUndefinedFlag = 0x08;

media_status_t checkHeader(ByteView header) {
    if (!header.holds(ogm::kCapturePattern, 0)) {
        ALOGI("Page Starts without signatures\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    if (header[ogm::kVersionOffset] != 0) {
        ALOGI("Version Error, verison should be 0 but %X\n", header[ogm::kVersionOffset]);
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    if (header[ogm::kFlagsOffset] >= kFirstUndefinedFlag) {
        ALOGI("Flag only bits 0-2 are defined in version 0\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    return AMEDIA_OK;
}

void storeHeader(ByteView header, OgmPage* page) {
    page->mFlags = header[ogm::kFlagsOffset];
    page->mGranulePosition = header.u64le(ogm::kGranulePositionOffset);
    page->mSerialNo = header.u32le(ogm::kSerialNoOffset);
    page->mPageNo = header.u32le(ogm::kPageNoOffset);
    page->mNumSegments = header[ogm::kNumSegmentsOffset];
}

/** Counts the packets that end on the page; returns the size of its body in bytes. */
int64_t countPackets(OgmPage* page) {
    // As narrow as 255 lacing values allow, so that more of them are counted at a time.
    uint8_t packets = 0;
    uint16_t bodySize = 0;
    for (size_t i = 0; i < page->mNumSegments; ++i) {
        bodySize = static_cast<uint16_t>(bodySize + page->mLacing[i]);
        packets = static_cast<uint8_t>(packets + (page->mLacing[i] != ogm::kUnterminated ? 1 : 0));
    }
    page->mNumPackets = packets;
    return bodySize;
}

}  // namespace

int64_t OgmExtractor::readPage(int64_t offset, OgmPage* page) {
    uint8_t bytes[OgmPage::kFixedHeaderSize] = {};
    // The count is compared without its sign: a failed read (negative) passes and goes on with the
    // cleared bytes, so that it is reported as a missing capture pattern.
    const auto count = static_cast<size_t>(mDataSource->readAt(offset, bytes, sizeof(bytes)));
    if (count < sizeof(bytes)) {
        ALOGI("failed to read %d bytesat offset 0x%08lx\n", static_cast<int>(sizeof(bytes)),
              static_cast<unsigned long>(offset));
        return AMEDIA_ERROR_IO;
    }
    const ByteView header(bytes, sizeof(bytes));
    if (const media_status_t status = checkHeader(header); status != AMEDIA_OK) {
        return status;
    }
    storeHeader(header, page);
    // Not cleared before: after a short read the rest of the table is that of the page before.
    const ssize_t lacingCount =
            mDataSource->readAt(wrapAdd(offset, int64_t{OgmPage::kFixedHeaderSize}),
                                page->mLacing.data(), page->mNumSegments);
    if (lacingCount < page->mNumSegments) {
        ALOGI("failed to read segments lace length data\n");
        return AMEDIA_ERROR_IO;
    }
    return page->headerSize() + countPackets(page);
}

media_status_t OgmExtractor::FindPage(int64_t offset, int64_t* foundOffset, int64_t maxSkip) {
    int64_t position = offset;
    for (;;) {
        uint8_t bytes[ogm::kCapturePattern.size()] = {};
        const ssize_t count = mDataSource->readAt(position, bytes, sizeof(bytes));
        if (count < static_cast<ssize_t>(sizeof(bytes))) {
            ALOGE("FindPage: readSize = %d", static_cast<int>(count));
            *foundOffset = 0;
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        const int64_t skipped = wrapSub(position, offset);
        if (ByteView(bytes, sizeof(bytes)).holds(ogm::kCapturePattern, 0)) {
            if (skipped != 0) {
                ALOGI("*** Skip %ld bytes of junk from %ld to reach page start ***\n", skipped,
                      offset);
            }
            *foundOffset = position;
            return AMEDIA_OK;
        }
        position = wrapAdd(position, 1);
        if (maxSkip >= 1 && wrapSub(position, offset) >= maxSkip) {
            ALOGI("Skip %ld bytes of junk from %ld still cannot reach page start\n", maxSkip,
                  offset);
            *foundOffset = 0;
            return AMEDIA_ERROR_UNSUPPORTED;
        }
    }
}

media_status_t OgmExtractor::seekToPage(int64_t offset, int64_t maxSkip) {
    int64_t position = 0;
    const media_status_t status = FindPage(offset, &position, maxSkip);
    if (status == AMEDIA_ERROR_END_OF_STREAM) {
        ALOGI("Seek to file end\n");
        position = mDataSourceSize;
    } else if (status != AMEDIA_OK) {
        ALOGI("Cannot find a page start, from 0x%08X in size %d\n", static_cast<uint32_t>(offset),
              static_cast<int>(maxSkip));
        return status;
    } else {
        mCurrentPageSize = readPage(position, &currPage);
        // A negative status passes for a size: the next page is then looked for in front of this
        // one, by as many bytes as the status says.
        if (mCurrentPageSize == 0) {
            ALOGI("Cannot read a page header, at 0x%08X\n", static_cast<uint32_t>(position));
            return AMEDIA_ERROR_END_OF_STREAM;
        }
    }
    mCurrentPageOffset = position;
    rewindPage();
    for (const auto& [serialNo, track] : mStartedTracks) {
        if (track != nullptr) {
            track->resetPageState();
        }
    }
    return AMEDIA_OK;
}

}  // namespace android
