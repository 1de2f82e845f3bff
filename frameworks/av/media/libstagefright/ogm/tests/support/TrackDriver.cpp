// SPDX-License-Identifier: Apache-2.0
#include "TrackDriver.h"

#include <memory>
#include <utility>

#include "PrivateMember.h"
#include "audio/OgmBufferQueue.h"
#include "audio/OgmEsQueue.h"

namespace android::ogm::test {
namespace {

constexpr uint32_t kSerialNo = 1;
constexpr uint16_t kBitsPerSample = 16;

Bytes bytesOf(const ByteBuffer& buffer) {
    const ByteView view = buffer.view();
    return Bytes(view.data(), view.data() + view.size());
}

}  // namespace

// Not in the unnamed namespace: the friends must belong to that of PrivateMember.
struct PacketBuff {
    using Type = ByteBuffer OgmTrack::*;
    friend Type memberOf(PacketBuff);
};

struct RangeInfos {
    using Type = ogm::Fifo<RangeInfo> OgmTrack::*;
    friend Type memberOf(RangeInfos);
};

struct OutputFormat {
    using Type = FormatPtr OgmTrack::*;
    friend Type memberOf(OutputFormat);
};

struct LearnFormat {
    using Type = void (OgmTrack::*)(uint32_t, int32_t, int32_t);
    friend Type memberOf(LearnFormat);
};
template struct PrivateMember<PacketBuff, &OgmTrack::mPacketBuff>;
template struct PrivateMember<RangeInfos, &OgmTrack::mRangeInfos>;
template struct PrivateMember<OutputFormat, &OgmTrack::mFormat>;
template struct PrivateMember<LearnFormat, &OgmTrack::learnFormat>;

ExtractorOverBytes::ExtractorOverBytes(const Bytes& file)
    : mSource(file), mExtractor(std::make_unique<DataSourceHelper>(mSource.table())) {}

TrackDriver::TrackDriver(uint32_t streamType)
    : mTrack(&*mExtractor, kSerialNo, streamType, kBitsPerSample) {}

media_status_t TrackDriver::append(const Bytes& bytes, int64_t timeUs) {
    ByteBuffer exact(viewOf(bytes));
    return mTrack.appendAudioData(&exact, timeUs);
}

std::optional<AccessUnit> TrackDriver::next() {
    const std::optional<android::AccessUnit> cut = mTrack.dequeueAccessUnit();
    if (!cut) {
        return std::nullopt;
    }
    AccessUnit unit;
    unit.bytes = bytesOf(cut->bytes);
    if (cut->timeUs >= 0) {
        unit.timeUs = cut->timeUs;
    }
    return unit;
}

std::vector<AccessUnit> TrackDriver::cut(size_t limit) {
    std::vector<AccessUnit> units;
    while (units.size() < limit) {
        std::optional<AccessUnit> unit = next();
        if (!unit) {
            break;
        }
        units.push_back(std::move(*unit));
    }
    return units;
}

std::vector<AccessUnit> TrackDriver::feed(const Bytes& piece, int64_t timeUs) {
    // As the track itself does it, nothing is cut after an append that failed.
    return append(piece, timeUs) == AMEDIA_OK ? cut() : std::vector<AccessUnit>{};
}

Bytes TrackDriver::buffered() {
    return bytesOf(mTrack.*memberOf(PacketBuff{}));
}

Ranges TrackDriver::ranges() {
    Ranges all;
    const ogm::Fifo<RangeInfo>& ranges = mTrack.*memberOf(RangeInfos{});
    for (size_t i = 0; i < ranges.size(); ++i) {
        all.emplace_back(ranges[i].mTimestampUs, ranges[i].mLength);
    }
    return all;
}

void TrackDriver::place(const Bytes& bytes, int64_t timeUs) {
    mTrack.*memberOf(PacketBuff{}) = ByteBuffer(viewOf(bytes));
    (mTrack.*memberOf(RangeInfos{})).push_back({timeUs, bytes.size()});
}

AMediaFormat* TrackDriver::format() {
    return (mTrack.*memberOf(OutputFormat{})).get();
}

void TrackDriver::learnFormat(uint32_t header, int32_t sampleRate, int32_t channels) {
    (mTrack.*memberOf(LearnFormat{}))(header, sampleRate, channels);
}

}  // namespace android::ogm::test
