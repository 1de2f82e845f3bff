// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/HeaderPages.h"

#include <log/log.h>
#include <media/stagefright/MediaBuffer.h>

#include <cinttypes>
#include <optional>

#include "base/Wrap.h"

namespace android::ogm {

namespace {

/** Only this many pages are searched for stream headers. */
constexpr int kMaxHeaderPages = 121;

/** Returns false if the packet cannot be read. Packets of other kinds are ignored. */
bool readStreamHeader(const PageReader& pages, int64_t pageOffset, int64_t pageSize,
                      const OgmPage& page, StreamTable* streams) {
    const auto bodySize = static_cast<size_t>(pageSize - page.headerSize());
    ALOGD("currPage.mNumSegments =%d, pageDataSize =%d", page.mNumSegments,
          static_cast<int>(bodySize));
    // Owned by its reference count: release() deletes it.
    auto* const buffer = new MediaBuffer(bodySize);
    const bool isRead =
            pages.readBody(wrapAdd(pageOffset, page.headerSize()), buffer->data(), bodySize);
    if (isRead) {
        (void)streams->parseOgmHeader(*buffer, page.mSerialNo);
    } else {
        ALOGE("Cannot read page data, size %d\n", static_cast<int>(bodySize));
    }
    buffer->release();
    return isRead;
}

}  // namespace

int64_t parseHeaderPages(const PageReader& pages, StreamTable* streams) {
    std::optional<int64_t> firstDataPage;
    int64_t offset = 0;
    OgmPage page;
    for (int i = 0; i < kMaxHeaderPages; ++i) {
        // Each page is searched for twice: reads and log lines of the first search are behaviour.
        int64_t unused = 0;
        (void)pages.FindPage(offset, &unused, 0);
        const PageStep step = pages.nextPage(offset, &page);
        if (!step.isFound) {
            ALOGI("Cannot find a page start,LINE:2774 from %" PRId64 "\n", offset);
            break;
        }
        if (!step.hasHeader()) {
            ALOGI("Cannot read a page header, at %" PRId64 "\n", step.offset);
            break;
        }
        if ((page.mFlags & OgmPage::kFirstPage) != 0) {
            // The length of skipped junk is not added, so after junk the packet is not found.
            if (!readStreamHeader(pages, offset, step.size, page, streams)) {
                break;
            }
        } else if (!firstDataPage) {
            firstDataPage = offset;
            ALOGI("mFirstDataPageOffset = %" PRId64, offset);
        }
        offset = step.end();
    }
    return firstDataPage.value_or(0);
}

}  // namespace android::ogm
