// SPDX-License-Identifier: Apache-2.0

/**
 * Reading of page headers and the search for pages:
 *
 *     1 byte    low bits: where to begin; upper bits: maximum number of bytes to skip, in units of
 * 4 the rest  the file
 */

#define LOG_TAG "OgmFuzzer"

#include <algorithm>
#include <memory>

#include "Ends.h"
#include "ScriptedSource.h"
#include "page/PageCursor.h"
#include "page/PageFormat.h"
#include "page/PageReader.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

constexpr int kBeginBits = 4;
constexpr int kSkipStep = 4;

bool holdsPage(const Bytes& file, int64_t offset) {
    return ogm::ByteView(file.data(), file.size())
            .holds(ogm::kCapturePattern, static_cast<size_t>(offset));
}

void checkPage(const OgmPage& page, int64_t pageSize) {
    int64_t expected = page.headerSize();
    uint32_t packets = 0;
    for (size_t i = 0; i < page.mNumSegments; ++i) {
        expected += page.mLacing[i];
        packets += page.mLacing[i] == ogm::kUnterminated ? 0 : 1;
    }
    require(pageSize == expected, "a page has another size than its lacing table says");
    require(packets == page.mNumPackets, "a page has other packets than its lacing table says");
}

void readPageAt(const ogm::PageReader& pages, int64_t offset) {
    OgmPage page;
    const int64_t pageSize = pages.readPage(offset, &page);
    switch (pageSize) {
        case AMEDIA_ERROR_MALFORMED:
        case AMEDIA_ERROR_UNSUPPORTED:
        case AMEDIA_ERROR_IO:
            break;
        default:
            checkPage(page, pageSize);
    }
}

void run(const SessionInput& input, int64_t offset, int64_t maxSkip) {
    ScriptedSource source(input, input.file);
    const ogm::PageReader pages(std::make_unique<DataSourceHelper>(source.table()));
    readPageAt(pages, offset);
    int64_t found = -1;
    const media_status_t status = pages.FindPage(offset, &found, maxSkip);
    if (status == AMEDIA_OK) {
        require(holdsPage(input.file, found), "no page is where one was found");
        require(maxSkip < 1 || found - offset < maxSkip, "too much has been skipped");
        readPageAt(pages, found);
    } else {
        require(found == 0, "an offset is returned without a page");
        require(status == AMEDIA_ERROR_END_OF_STREAM ||
                        (status == AMEDIA_ERROR_UNSUPPORTED && maxSkip > 0),
                "the status of a search");
    }
    ogm::PageCursor cursor;
    const media_status_t moved = cursor.goToPage(pages, offset, maxSkip);
    require(source.isSilent() || moved == (status == AMEDIA_ERROR_UNSUPPORTED ? status : AMEDIA_OK),
            "the cursor did not move as the search says");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InputReader reader(data, size);
    const uint8_t places = reader.u8();
    SessionInput input;
    input.file = bytesOf(reader.rest());
    (void)endsByItself([&] {
        run(input, places & ((1 << kBeginBits) - 1), int64_t{places >> kBeginBits} * kSkipStep);
    });
    return 0;
}
