// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/DtsCutter.h"

#include <log/log.h>

#include <algorithm>

#include "base/Assert.h"

namespace android::ogm {

namespace {

// Sync words of ETSI TS 102 114, as 32-bit little-endian numbers.
constexpr uint32_t kCore16 = 0x0180FE7F;
constexpr uint32_t kSubstream = 0x25205864;
constexpr uint32_t kCore14 = 0x00E8FF1F;

constexpr size_t kSyncWordSize = 4;

/** A sync word is only found if a byte follows it. */
constexpr size_t kSyncAndNext = kSyncWordSize + 1;

constexpr bool isSync(uint32_t word) {
    return word == kCore16 || word == kSubstream || word == kCore14;
}

}  // namespace

std::optional<size_t> findDtsStart(ByteView data) {
    for (size_t position = 0; position + 1 < data.size(); ++position) {
        const uint32_t word = data.u32le(position);
        if (word == kCore16 || word == kSubstream) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<size_t> findDtsSync(ByteView data, size_t from) {
    uint32_t word = data.u32le(from);
    for (size_t position = from; position + kSyncWordSize < data.size(); ++position) {
        if (isSync(word)) {
            return position;
        }
        word = word >> 8 | uint32_t{data[position + kSyncWordSize]} << 24;
    }
    return std::nullopt;
}

namespace {

/**
 * The first sync word at or after `from`. Each byte is examined once, even if bytes are appended
 * many times before a sync word comes.
 */
std::optional<size_t> findNextSync(ElementaryStream* stream, size_t from) {
    const ByteView data = stream->view();
    const size_t start = std::max(from, stream->searched());
    const std::optional<size_t> found = findDtsSync(data, start);
    if (!found && data.size() > kSyncWordSize) {
        stream->setSearched(std::max(start, data.size() - kSyncWordSize));
    }
    return found;
}

}  // namespace

std::optional<size_t> DtsCutter::findFirstSync(ByteView bytes) const {
    const std::optional<size_t> start = findDtsStart(bytes);
    if (start.value_or(0) > 0) {
        ALOGI("found something resembling an DTS syncword at offset %zu", *start);
    }
    return start;
}

std::optional<AccessUnit> DtsCutter::dequeueAccessUnit(ElementaryStream* stream,
                                                       PieceAllocator* allocator) {
    const bool startsWithSync = findDtsSync(stream->view().first(kSyncAndNext), 0).has_value();
    const std::optional<size_t> offset = startsWithSync ? 0 : findNextSync(stream, 1);
    if (!offset) {
        return std::nullopt;
    }
    if (*offset > 0) {
        // The bytes before a frame are dropped together with their time.
        stream->dropBytes(*offset);
        (void)stream->fetchTimestamp(*offset);
    }
    // The frame's size field is not used: a frame ends where the next sync word begins.
    const std::optional<size_t> size = findNextSync(stream, 1);
    if (!size) {
        return std::nullopt;
    }
    AccessUnit unit{stream->takeFrame(0, *size, allocator)};
    unit.timeUs = stream->fetchTimestamp(*size);
    OGM_CHECK_VALUES(unit.timeUs >= 0,
                     OGM_SOURCES "OgmExtractor:783 CHECK_GE( timeUs,0ll) failed: ", unit.timeUs, 0);
    return unit;
}

}  // namespace android::ogm
