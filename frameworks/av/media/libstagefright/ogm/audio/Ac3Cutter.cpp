// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/Ac3Cutter.h"

#include <log/log.h>
#include <media/stagefright/foundation/ABitReader.h>

#include <iterator>
#include <string_view>

#include "base/Assert.h"

namespace android::ogm {

namespace {

constexpr size_t kMinBufferedSize = 10;
constexpr std::string_view kSyncWord("\x0B\x77", 2);
constexpr uint32_t kSyncWordValue = 0x0B77;

/** The byte that begins with bsid: 0 to 10 for AC-3, 11 to 16 for E-AC-3. */
constexpr size_t kBitStreamIdOffset = 5;
constexpr int kBitStreamIdShift = 3;
constexpr uint8_t kFirstEac3 = 11 << kBitStreamIdShift;
constexpr uint8_t kLastEac3 = (17 << kBitStreamIdShift) - 1;

constexpr uint32_t kReservedRate = 3;
constexpr size_t kRates = 3;

/**
 * 16-bit words in a frame, by frmsizecod and fscod: ATSC A/52, table 5.18, without the row for
 * frmsizecod 3 (80, 88, 120). So from there on each row is the standard's next row, and there is
 * none for the last code. All devices cut such frames too long; keep it.
 */
constexpr uint16_t kFrameWords[][kRates] = {
        {64, 69, 96},       {64, 70, 96},       {80, 87, 120},      {96, 104, 144},
        {96, 105, 144},     {112, 121, 168},    {112, 122, 168},    {128, 139, 192},
        {128, 140, 192},    {160, 174, 240},    {160, 175, 240},    {192, 208, 288},
        {192, 209, 288},    {224, 243, 336},    {224, 244, 336},    {256, 278, 384},
        {256, 279, 384},    {320, 348, 480},    {320, 349, 480},    {384, 417, 576},
        {384, 418, 576},    {448, 487, 672},    {448, 488, 672},    {512, 557, 768},
        {512, 558, 768},    {640, 696, 960},    {640, 697, 960},    {768, 835, 1152},
        {768, 836, 1152},   {896, 975, 1344},   {896, 976, 1344},   {1024, 1114, 1536},
        {1024, 1115, 1536}, {1152, 1253, 1728}, {1152, 1254, 1728}, {1280, 1393, 1920},
        {1280, 1394, 1920}, {0, 0, 0},
};

Ac3Frame parseAc3Sizes(ABitReader* bits) {
    bits->skipBits(16);  // crc1
    const uint32_t fscod = bits->getBits(2);
    const uint32_t frmsizecod = bits->getBits(6);
    if (fscod == kReservedRate || frmsizecod >= std::size(kFrameWords)) {
        return {Ac3Frame::Kind::kBadRate, 0, 0};
    }
    const auto size = static_cast<uint16_t>(kFrameWords[frmsizecod][fscod] * sizeof(uint16_t));
    return {Ac3Frame::Kind::kFrame, size, 0};
}

Ac3Frame parseEac3Sizes(ABitReader* bits) {
    bits->skipBits(2);  // strmtyp
    bits->skipBits(3);  // substreamid
    const uint32_t frmsiz = bits->getBits(11);
    return {Ac3Frame::Kind::kFrame, static_cast<uint16_t>((frmsiz + 1) * sizeof(uint16_t)), 0};
}

}  // namespace

std::optional<size_t> findAc3Sync(ByteView data, size_t from) {
    return data.find(kSyncWord, from);
}

Ac3Frame parseAc3Frame(ByteView data) {
    ABitReader bits(data.data(), data.size());
    const uint32_t syncWord = bits.getBits(16);
    OGM_CHECK_VALUES(syncWord == kSyncWordValue,
                     OGM_SOURCES "OgmExtractor:827 CHECK_EQ( bits.getBits(16),0x0B77) failed: ",
                     syncWord, kSyncWordValue);
    const uint8_t bsidByte = data[kBitStreamIdOffset];
    if (bsidByte < kFirstEac3) {
        return parseAc3Sizes(&bits);
    }
    if (bsidByte > kLastEac3) {
        return {Ac3Frame::Kind::kBadBitStreamId, 0,
                static_cast<uint8_t>(bsidByte >> kBitStreamIdShift)};
    }
    return parseEac3Sizes(&bits);
}

std::optional<size_t> Ac3Cutter::findFirstSync(ByteView bytes) const {
    const std::optional<size_t> start = findAc3Sync(bytes, 0);
    if (start.value_or(0) > 0) {
        ALOGD("found something resembling an AC3 syncword at offset %zu", *start);
    }
    return start;
}

std::optional<AccessUnit> Ac3Cutter::dequeueAccessUnit(ElementaryStream* stream,
                                                       PieceAllocator* allocator) {
    const ByteView data = stream->view();
    if (data.size() < kMinBufferedSize) {
        ALOGD("****NO enough data in AC3 ESQueue****");
        return std::nullopt;
    }
    const std::optional<size_t> offset = findAc3Sync(data, stream->searched());
    if (!offset) {
        // The last byte may begin a sync word that the next bytes complete.
        stream->setSearched(data.size() - 1);
        return std::nullopt;
    }
    const Ac3Frame frame = parseAc3Frame(data.from(*offset));
    if (frame.kind != Ac3Frame::Kind::kFrame) {
        if (frame.kind == Ac3Frame::Kind::kBadRate) {
            ALOGD("fscod=3,discard this frame");
        } else {
            ALOGD("[dequeueAccessUnitAC3]***wrong bsid:%u***", frame.bsid);
        }
        // Like the bytes before a frame, these are not charged to any range.
        stream->dropBytes(*offset + kSyncWord.size());
        return std::nullopt;
    }
    const size_t available = data.size() - *offset;
    if (available < frame.size) {
        ALOGD("NO enough data: accessUnit size:%d > remaining data after offset :%d", frame.size,
              static_cast<int>(available));
        return std::nullopt;
    }
    AccessUnit unit{stream->takeFrame(*offset, frame.size, allocator)};
    unit.timeUs = stream->fetchTimestamp(frame.size);
    return unit;
}

}  // namespace android::ogm
