// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmAssert.h"
#include "OgmCutters.h"
#include "OgmExtractor.h"

namespace android {

using ogm::ByteView;

namespace {

// Sync words of ETSI TS 102 114, as four bytes read little-endian.
constexpr uint32_t kCore16 = 0x0180FE7F;
constexpr uint32_t kSubstream = 0x25205864;
constexpr uint32_t kCore14 = 0x00E8FF1F;

constexpr size_t kSyncWordSize = 4;
constexpr size_t kMinFrameAndSync = 6;

}  // namespace

std::optional<size_t> ogm::findDtsStart(ByteView data) {
    for (size_t position = 0; position + 1 < data.size(); ++position) {
        const uint32_t word = data.u32le(position);
        if (word == kCore16 || word == kSubstream) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<size_t> ogm::findDtsSync(ByteView data, size_t from) {
    for (size_t position = from; position + kSyncWordSize < data.size(); ++position) {
        const uint32_t word = data.u32le(position);
        if (word == kCore16 || word == kSubstream || word == kCore14) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<AccessUnit> OgmTrack::dequeueAccessUnitDTS() {
    const std::optional<size_t> offset = ogm::findDtsSync(mPacketBuff.view(), 0);
    if (!offset) {
        return std::nullopt;
    }
    if (*offset > 0) {
        // The bytes in front of a frame are charged to nobody, and their time goes with them.
        mPacketBuff.dropFront(*offset);
        (void)fetchTimestamp(*offset);
    }
    const ByteView data = mPacketBuff.view();
    if (data.size() < kMinFrameAndSync) {
        return std::nullopt;
    }
    // No field tells the size of a frame here: it ends where the next one begins.
    const std::optional<size_t> size = ogm::findDtsSync(data, 1);
    if (!size) {
        return std::nullopt;
    }
    AccessUnit unit{takeFrame(0, *size)};
    unit.timeUs = fetchTimestamp(*size);
    OGM_CHECK_VALUES(unit.timeUs >= 0,
                     OGM_SOURCES "OgmExtractor:783 CHECK_GE( timeUs,0ll) failed: ", unit.timeUs, 0);
    return unit;
}

}  // namespace android
