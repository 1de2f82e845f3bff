// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "page/PageReader.h"

#include <log/log.h>

#include <cinttypes>

#include "base/ByteView.h"
#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android::ogm {

namespace {

constexpr uint8_t kFirstUndefinedFlag = 0x08;

media_status_t checkHeader(ByteView header) {
    if (!header.holds(kCapturePattern, 0)) {
        ALOGI("Page Starts without signatures\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    if (header[kVersionOffset] != 0) {
        ALOGI("Version Error, verison should be 0 but %X\n", header[kVersionOffset]);
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    if (header[kFlagsOffset] >= kFirstUndefinedFlag) {
        ALOGI("Flag only bits 0-2 are defined in version 0\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    return AMEDIA_OK;
}

void storeHeader(ByteView header, OgmPage* page) {
    page->mFlags = header[kFlagsOffset];
    page->mGranulePosition = header.u64le(kGranulePositionOffset);
    page->mSerialNo = header.u32le(kSerialNoOffset);
    page->mPageNo = header.u32le(kPageNoOffset);
    page->mNumSegments = header[kNumSegmentsOffset];
}

/** Counts the packets that end on the page; returns the size of its body in bytes. */
int64_t countPackets(OgmPage* page) {
    // 8 bits are enough for 255 lacing values, and let the compiler count more of them at a time.
    uint8_t packets = 0;
    uint16_t bodySize = 0;
    for (size_t i = 0; i < page->mNumSegments; ++i) {
        bodySize = static_cast<uint16_t>(bodySize + page->mLacing[i]);
        packets = static_cast<uint8_t>(packets + (page->mLacing[i] != kUnterminated ? 1 : 0));
    }
    page->mNumPackets = packets;
    return bodySize;
}

}  // namespace

void PageReader::readDataSourceSize() {
    // The status is ignored: the size is what the source stores, even if it fails.
    (void)mDataSource->getSize(&mDataSourceSize);
}

int64_t PageReader::readPage(int64_t offset, OgmPage* page) const {
    uint8_t bytes[OgmPage::kFixedHeaderSize] = {};
    // The comparison is unsigned, so a failed read (negative) passes it. The bytes are then still
    // 0, and a missing capture pattern is reported.
    const auto count = static_cast<size_t>(mDataSource->readAt(offset, bytes, sizeof(bytes)));
    if (count < sizeof(bytes)) {
        ALOGI("failed to read 27 bytesat offset 0x%08" PRIx64 "\n", offset);
        return AMEDIA_ERROR_IO;
    }
    const ByteView header(bytes, sizeof(bytes));
    if (const media_status_t status = checkHeader(header); status != AMEDIA_OK) {
        return status;
    }
    storeHeader(header, page);
    // Not cleared first: after a short read the rest of the table is that of the page before.
    const ssize_t lacingCount =
            mDataSource->readAt(wrapAdd(offset, int64_t{OgmPage::kFixedHeaderSize}),
                                page->mLacing.data(), page->mNumSegments);
    if (lacingCount < page->mNumSegments) {
        ALOGI("failed to read segments lace length data\n");
        return AMEDIA_ERROR_IO;
    }
    return page->headerSize() + countPackets(page);
}

media_status_t PageReader::FindPage(int64_t offset, int64_t* foundOffset, int64_t maxSkip) const {
    int64_t position = offset;
    for (;;) {
        uint8_t bytes[kCapturePattern.size()] = {};
        const ssize_t count = mDataSource->readAt(position, bytes, sizeof(bytes));
        if (count < static_cast<ssize_t>(sizeof(bytes))) {
            ALOGE("FindPage: readSize = %d", static_cast<int>(count));
            *foundOffset = 0;
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        const int64_t skipped = wrapSub(position, offset);
        if (ByteView(bytes, sizeof(bytes)).holds(kCapturePattern, 0)) {
            if (skipped != 0) {
                ALOGI("*** Skip %" PRId64 " bytes of junk from %" PRId64
                      " to reach page start ***\n",
                      skipped, offset);
            }
            *foundOffset = position;
            return AMEDIA_OK;
        }
        position = wrapAdd(position, 1);
        if (maxSkip >= 1 && wrapSub(position, offset) >= maxSkip) {
            ALOGI("Skip %" PRId64 " bytes of junk from %" PRId64 " still cannot reach page start\n",
                  maxSkip, offset);
            *foundOffset = 0;
            return AMEDIA_ERROR_UNSUPPORTED;
        }
    }
}

PageStep PageReader::nextPage(int64_t offset, OgmPage* page) const {
    PageStep step;
    step.isFound = FindPage(offset, &step.offset, 0) == AMEDIA_OK;
    if (step.isFound) {
        step.size = readPage(step.offset, page);
    }
    return step;
}

bool PageReader::readBody(int64_t offset, void* data, size_t size) const {
    return mDataSource->readAt(offset, data, size) == static_cast<ssize_t>(size);
}

}  // namespace android::ogm
