// SPDX-License-Identifier: Apache-2.0
#include "ReferenceCutter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "ElementaryStreams.h"

namespace android::ogm::test {
namespace {

constexpr size_t kSearchLimit = 131072;
constexpr uint32_t kAgreementMask = 0xFFFE0C00;
constexpr int64_t kUnknownTime = 4294967295;

// 16-bit words of an AC-3 frame at 48, 44.1 and 32 kHz.
constexpr size_t kAc3Words[38][3] = {
        {64, 69, 96},       {64, 70, 96},       {80, 87, 120},      {96, 104, 144},
        {96, 105, 144},     {112, 121, 168},    {112, 122, 168},    {128, 139, 192},
        {128, 140, 192},    {160, 174, 240},    {160, 175, 240},    {192, 208, 288},
        {192, 209, 288},    {224, 243, 336},    {224, 244, 336},    {256, 278, 384},
        {256, 279, 384},    {320, 348, 480},    {320, 349, 480},    {384, 417, 576},
        {384, 418, 576},    {448, 487, 672},    {448, 488, 672},    {512, 557, 768},
        {512, 558, 768},    {640, 696, 960},    {640, 697, 960},    {768, 835, 1152},
        {768, 836, 1152},   {896, 975, 1344},   {896, 976, 1344},   {1024, 1114, 1536},
        {1024, 1115, 1536}, {1152, 1253, 1728}, {1152, 1254, 1728}, {1280, 1393, 1920},
        {1280, 1394, 1920}, {0, 0, 0}};

uint32_t wordAt(const Bytes& bytes, size_t position) {
    uint32_t word = 0;
    for (size_t i = 0; i < 4; ++i) {
        const uint32_t byte = position + i < bytes.size() ? bytes[position + i] : 0;
        word |= byte << (24 - 8 * i);
    }
    return word;
}

bool standsAt(const Bytes& bytes, size_t position, std::initializer_list<uint8_t> text) {
    // The tests are not optimised: with std::equal this would take a third of their time.
    return position + text.size() <= bytes.size() &&
           std::memcmp(&bytes[position], text.begin(), text.size()) == 0;
}

bool plausibleAt(const Bytes& bytes, size_t position) {
    if (position + 3 > bytes.size()) {
        return false;
    }
    const uint32_t word = wordAt(bytes, position);
    return (word >> 21 & 0x7FF) == 0x7FF && (word >> 19 & 3) != 1 && (word >> 17 & 3) != 0 &&
           (word >> 12 & 15) != 15 && (word >> 10 & 3) != 3;
}

/** 0 for an invalid header. */
size_t frameSizeOf(uint32_t word) {
    MpegAudioFrame frame;
    frame.version = static_cast<MpegVersion>(word >> 19 & 3);
    frame.layer = 4 - (word >> 17 & 3);
    frame.bitrateIndex = word >> 12 & 15;
    frame.samplingRateIndex = word >> 10 & 3;
    frame.padding = (word >> 9 & 1) != 0;
    const bool decodes = (word >> 21 & 0x7FF) == 0x7FF && (word >> 19 & 3) != 1 &&
                         frame.layer != 4 && frame.bitrateIndex != 0 && frame.bitrateIndex != 15 &&
                         frame.samplingRateIndex != 3;
    return decodes ? frame.size() : 0;
}

bool agree(uint32_t one, uint32_t other) {
    return ((one ^ other) & kAgreementMask) == 0;
}

struct Lock {
    uint32_t header;
    size_t offset;
};

/** The first header that the header one frame later confirms. */
std::optional<Lock> confirmedHeader(const Bytes& bytes) {
    const size_t size = bytes.size();
    size_t offset = 0;
    size_t frameSize = 0;
    uint32_t candidate = 0;
    while (offset + 4 < size) {
        for (size_t position = offset; position + 4 < size; ++position) {
            if (!plausibleAt(bytes, position)) {
                continue;
            }
            offset = position;
            candidate = wordAt(bytes, position);
            frameSize = frameSizeOf(candidate);
            if (frameSize != 0) {
                break;
            }
        }
        const size_t next = offset + frameSize;
        if (frameSize == 0 || next >= size) {
            return std::nullopt;
        }
        if (agree(wordAt(bytes, next), candidate) || agree(wordAt(bytes, next + 3), candidate)) {
            return Lock{candidate, next};
        }
        if (frameSizeOf(wordAt(bytes, next)) != 0) {
            candidate = wordAt(bytes, next);
            frameSize = frameSizeOf(candidate);
            offset = next;
        } else {
            ++offset;
        }
    }
    return std::nullopt;
}

std::optional<size_t> dtsSyncFrom(const Bytes& bytes, size_t from) {
    for (size_t i = from; i + 4 < bytes.size(); ++i) {
        if (standsAt(bytes, i, {0x7F, 0xFE, 0x80, 0x01}) ||
            standsAt(bytes, i, {0x64, 0x58, 0x20, 0x25}) ||
            standsAt(bytes, i, {0x1F, 0xFF, 0xE8, 0x00})) {
            return i;
        }
    }
    return std::nullopt;
}

}  // namespace

size_t measuredAc3FrameSize(uint32_t frmsizecod, uint32_t fscod) {
    return kAc3Words[frmsizecod][fscod] * 2;
}

std::vector<std::pair<int64_t, uint64_t>> ReferenceCutter::ranges() const {
    std::vector<std::pair<int64_t, uint64_t>> all;
    for (const Range& range : mRanges) {
        all.emplace_back(range.timeUs, range.length);
    }
    return all;
}

std::optional<size_t> ReferenceCutter::alignment(const Bytes& piece) const {
    for (size_t k = 0; k < piece.size(); ++k) {
        const bool mpeg = mCodec == Codec::kMpegAudio && plausibleAt(piece, k);
        const bool ac3 = mCodec == Codec::kAc3 && standsAt(piece, k, {0x0B, 0x77});
        const bool dts = mCodec == Codec::kDts && (standsAt(piece, k, {0x7F, 0xFE, 0x80, 0x01}) ||
                                                   standsAt(piece, k, {0x64, 0x58, 0x20, 0x25}));
        if (mpeg || ac3 || dts) {
            return k;
        }
    }
    return std::nullopt;
}

ReferenceCutter::Outcome ReferenceCutter::feed(const Bytes& piece, int64_t timeUs) {
    Outcome outcome;
    size_t skipped = 0;
    if (mBuffer.empty()) {
        const std::optional<size_t> sync = alignment(piece);
        if (!sync) {
            return outcome;
        }
        skipped = *sync;
    }
    outcome.accepted = true;
    mBuffer = joined({mBuffer, tail(piece, skipped)});
    mRanges.push_back({timeUs, piece.size() - skipped});
    for (;;) {
        AccessUnit unit;
        const Step step = cut(unit);
        // A unit without bytes is cut again and again.
        outcome.fatal = step == Step::kFatal || (step == Step::kUnit && unit.bytes.empty());
        if (step != Step::kUnit || outcome.fatal) {
            return outcome;
        }
        outcome.units.push_back(unit);
    }
}

ReferenceCutter::Step ReferenceCutter::cut(AccessUnit& unit) {
    switch (mCodec) {
        case Codec::kMpegAudio:
            return cutMpegAudio(unit);
        case Codec::kAc3:
            return cutAc3(unit);
        default:
            return cutDts(unit);
    }
}

ReferenceCutter::Step ReferenceCutter::cutMpegAudio(AccessUnit& unit) {
    if (mBuffer.size() <= 3) {
        return Step::kNone;
    }
    size_t offset = 0;
    if (mLockedHeader == 0) {
        const std::optional<Lock> lock = confirmedHeader(mBuffer);
        if (!lock) {
            if (mBuffer.size() > kSearchLimit) {
                mBuffer.clear();
            }
            return Step::kNone;
        }
        mLockedHeader = lock->header;
        offset = lock->offset;
    }
    while (offset + 4 <= mBuffer.size() && !agree(wordAt(mBuffer, offset), mLockedHeader)) {
        ++offset;
    }
    const size_t size =
            offset + 4 <= mBuffer.size() ? frameSizeOf(wordAt(mBuffer, offset)) : size_t{0};
    if (size == 0) {
        mBuffer.clear();
        return Step::kNone;
    }
    if (mBuffer.size() - offset < size) {
        return Step::kNone;
    }
    take(offset, size, unit);
    unit.timeUs = fetchTimestamp(offset + size);
    return unit.timeUs && *unit.timeUs >= 0 ? Step::kUnit : Step::kFatal;
}

ReferenceCutter::Step ReferenceCutter::cutAc3(AccessUnit& unit) {
    size_t p = 0;
    while (p + 2 <= mBuffer.size() && !standsAt(mBuffer, p, {0x0B, 0x77})) {
        ++p;
    }
    if (mBuffer.size() < 10 || p + 2 > mBuffer.size()) {
        return Step::kNone;
    }
    const size_t available = mBuffer.size() - p;
    if (available < 5) {
        return Step::kFatal;
    }
    const uint32_t kind = available > 5 ? mBuffer[p + 5] : 0;
    const uint32_t fscod = mBuffer[p + 4] >> 6;
    const uint32_t frmsizecod = mBuffer[p + 4] & 63;
    if (kind > 135 || (kind < 88 && (fscod == 3 || frmsizecod >= 38))) {
        mBuffer = tail(mBuffer, p + 2);
        return Step::kNone;
    }
    const size_t frmsiz = (mBuffer[p + 2] & 7) * 256 + mBuffer[p + 3];
    const size_t size = kind < 88 ? measuredAc3FrameSize(frmsizecod, fscod) : frmsiz * 2 + 2;
    if (available < size) {
        return Step::kNone;
    }
    take(p, size, unit);
    const std::optional<int64_t> timeUs = fetchTimestamp(size);
    if (!timeUs) {
        return Step::kFatal;
    }
    if (*timeUs >= 0) {
        unit.timeUs = timeUs;
    }
    return Step::kUnit;
}

ReferenceCutter::Step ReferenceCutter::cutDts(AccessUnit& unit) {
    const std::optional<size_t> first = dtsSyncFrom(mBuffer, 0);
    if (!first) {
        return Step::kNone;
    }
    if (*first > 0) {
        mBuffer = tail(mBuffer, *first);
        if (!fetchTimestamp(*first)) {
            return Step::kFatal;
        }
    }
    const std::optional<size_t> second = dtsSyncFrom(mBuffer, 1);
    if (mBuffer.size() < 6 || !second) {
        return Step::kNone;
    }
    take(0, *second, unit);
    unit.timeUs = fetchTimestamp(*second);
    return unit.timeUs && *unit.timeUs >= 0 ? Step::kUnit : Step::kFatal;
}

std::optional<int64_t> ReferenceCutter::fetchTimestamp(uint64_t size) {
    if (size == 0) {
        return -1;
    }
    std::optional<int64_t> timeUs;
    // A range that is exactly used up is removed; an empty range at the front still gives the time.
    while (size > 0) {
        if (mRanges.empty()) {
            return std::nullopt;
        }
        Range& range = mRanges.front();
        if (!timeUs || (*timeUs == kUnknownTime && range.timeUs != 0)) {
            timeUs = range.timeUs;
        }
        const uint64_t taken = std::min(size, range.length);
        range.length -= taken;
        size -= taken;
        if (range.length == 0) {
            mRanges.pop_front();
        }
    }
    return timeUs;
}

void ReferenceCutter::take(size_t offset, size_t size, AccessUnit& unit) {
    unit.bytes = head(tail(mBuffer, offset), size);
    mBuffer = tail(mBuffer, offset + size);
}

}  // namespace android::ogm::test
