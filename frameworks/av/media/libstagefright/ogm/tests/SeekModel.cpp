// SPDX-License-Identifier: Apache-2.0
#include "SeekModel.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "OgmFile.h"

namespace android::ogm::test {
namespace {

constexpr int64_t kLeadUs = 3000000;
constexpr int64_t kToleranceUs = 2000000;
constexpr int64_t kEndZoneUs = 200000;
constexpr size_t kFullQueue = 10;
constexpr int kRetries = 10;

uint64_t littleEndian(const Bytes& bytes, size_t position, size_t width) {
    uint64_t value = 0;
    for (size_t i = width; i > 0; --i) {
        value = value << 8 | bytes.at(position + i - 1);
    }
    return value;
}

int64_t steppedBack(int64_t offset) {
    constexpr int64_t kLongStep = 0x40000;
    constexpr int64_t kShortStep = 0x10000;
    if (offset >= kLongStep + kShortStep) {
        return offset - kLongStep;
    }
    return offset >= kShortStep ? offset - kShortStep : 0;
}

PagedFile::Stream streamOf(const Bytes& header) {
    PagedFile::Stream stream;
    stream.isVideo = header.at(1) == 'v' && header.at(2) == 'i';
    if (header.size() < kStreamHeaderSize) {
        return stream;  // Vorbis, for which no track is made
    }
    stream.timeUnit = littleEndian(header, 17, 8);
    if (stream.timeUnit != 0) {
        stream.sampleRate = littleEndian(header, 25, 8) * 10000000 / stream.timeUnit;
    }
    return stream;
}

}  // namespace

PagedFile::PagedFile(const Bytes& bytes) : size(static_cast<int64_t>(bytes.size())) {
    for (size_t offset = 0; offset < bytes.size();) {
        const auto lacing = bytes.begin() + static_cast<ptrdiff_t>(offset + kPageHeaderSize);
        const Bytes values(lacing, lacing + bytes.at(offset + 26));
        addPage(bytes, offset, values);
        offset = std::accumulate(values.begin(), values.end(),
                                 offset + kPageHeaderSize + values.size());
    }
    std::map<uint32_t, bool> later;
    for (auto page = pages.rbegin(); page != pages.rend(); ++page) {
        page->hasSuccessor = std::exchange(later[page->serialNo], true);
    }
}

void PagedFile::addPage(const Bytes& bytes, size_t offset, const Bytes& lacing) {
    std::vector<Bytes> packets(1);
    auto position =
            bytes.begin() + static_cast<ptrdiff_t>(offset + kPageHeaderSize + lacing.size());
    for (const uint8_t value : lacing) {
        packets.back().insert(packets.back().end(), position, position + value);
        position += value;
        if (value < 255) {
            packets.emplace_back();
        }
    }
    if (!packets.back().empty() || (bytes[offset + 5] & kContinuedPacket) != 0) {
        throw std::invalid_argument("a packet goes over the end of its page");
    }
    packets.pop_back();

    const auto serialNo = static_cast<uint32_t>(littleEndian(bytes, offset + 14, 4));
    if ((bytes[offset + 5] & kBeginOfStream) != 0) {
        streams[serialNo] = streamOf(packets.at(0));
        packets.clear();
    } else if (firstDataPageOffset == 0) {
        firstDataPageOffset = static_cast<int64_t>(offset);
    }
    std::vector<Bytes>& all = streams[serialNo].packets;
    pages.push_back({static_cast<int64_t>(offset), serialNo, littleEndian(bytes, offset + 6, 8),
                     all.size(), packets.size(), false});
    all.insert(all.end(), packets.begin(), packets.end());
}

SeekModel::SeekModel(const PagedFile& file, int64_t durationUs, std::vector<TrackModel> tracks)
    : mFile(file), mDurationUs(durationUs) {
    for (TrackModel& track : tracks) {
        TrackState state;
        state.stream = &file.streams.at(track.serialNo);
        state.model = std::move(track);
        mTracks.push_back(std::move(state));
    }
}

void SeekModel::TrackState::enterPage(uint64_t granule, bool pastFirstDataPage) {
    if (currentGranule > granule) {
        currentGranule = 0;
        granuleValid = !pastFirstDataPage || granule == 0;
    } else if (previousGranule <= currentGranule || currentGranule == granule) {
        granuleValid = true;
    }
    previousGranule = std::exchange(currentGranule, granule);
}

int64_t SeekModel::TrackState::timeUs() const {
    const uint64_t time = stream->isVideo ? previousGranule * stream->timeUnit / 10
                                          : previousGranule * 1000000 / stream->sampleRate;
    return static_cast<int64_t>(time);
}

SeekModel::TrackState* SeekModel::trackOf(uint32_t serialNo) {
    for (TrackState& track : mTracks) {
        if (track.model.serialNo == serialNo) {
            return &track;
        }
    }
    return nullptr;
}

void SeekModel::moveTo(int64_t offset) {
    // A cursor at offset 0 is treated as not set and goes to the first data page when it is used.
    offset = offset == 0 ? mFile.firstDataPageOffset : offset;
    const auto page = std::find_if(mFile.pages.begin(), mFile.pages.end(),
                                   [&](const auto& it) { return it.offset >= offset; });
    mPage = static_cast<size_t>(page - mFile.pages.begin());
    mBeforePage = true;
    const bool pastFirst = page == mFile.pages.end() || page->offset > mFile.firstDataPageOffset;
    for (TrackState& track : mTracks) {
        track.currentGranule = 0;
        track.previousGranule = pastFirst ? 1 : 0;
        track.granuleValid = false;
    }
}

bool SeekModel::enterNextPage() {
    if (!mBeforePage) {
        ++mPage;
        mBeforePage = true;
    }
    if (mPage >= mFile.pages.size()) {
        return false;
    }
    const PagedFile::Page& page = mFile.pages[mPage];
    if (TrackState* track = trackOf(page.serialNo)) {
        // The last page of a stream has no next granule position, so reading ends there.
        if (!page.hasSuccessor) {
            return false;
        }
        track->enterPage(page.granule, page.offset > mFile.firstDataPageOffset);
    }
    mBeforePage = false;
    mTaken = 0;
    return true;
}

int64_t SeekModel::currentTimeUs() const {
    int64_t largest = 0;
    for (const TrackState& track : mTracks) {
        if (!track.granuleValid || track.timeUs() == 0) {
            return 0;
        }
        largest = std::max(largest, track.timeUs());
    }
    return largest;
}

void SeekModel::seekToTime(int64_t timeUs) {
    for (TrackState& track : mTracks) {
        track.queue.clear();
    }
    if (timeUs < kLeadUs) {
        moveTo(mFile.firstDataPageOffset);
    } else if (mDurationUs != 0 && mDurationUs - timeUs < kEndZoneUs) {
        moveTo(mFile.size);
    } else {
        scanTo(timeUs - kLeadUs);
    }
}

void SeekModel::scanTo(int64_t targetUs) {
    int64_t offset = mFile.firstDataPageOffset;
    if (mDurationUs != 0) {
        offset += (mFile.size - offset) * targetUs / mDurationUs;
    }
    int64_t reachedUs = 0;
    do {
        offset = steppedBack(offset);
        moveTo(offset);
        while (enterNextPage()) {
            mTaken = mFile.pages[mPage].packetCount;
            reachedUs = currentTimeUs();
            if (reachedUs >= targetUs) {
                break;
            }
        }
    } while (offset != 0 && reachedUs - targetUs > kToleranceUs);
}

bool SeekModel::deliverPacket(bool seeking) {
    if (mBeforePage || mTaken == mFile.pages[mPage].packetCount) {
        if (!enterNextPage()) {
            return false;
        }
    }
    const PagedFile::Page& page = mFile.pages[mPage];
    if (mTaken == page.packetCount) {
        return true;
    }
    const size_t packet = page.firstPacket + mTaken++;
    TrackState* track = trackOf(page.serialNo);
    const bool dropped = track == nullptr || !track->granuleValid ||
                         (seeking && !track->stream->isVideo) || !track->model.isDelivered(packet);
    if (!dropped) {
        track->queue.push_back({packet, track->timeUs()});
    }
    return true;
}

bool SeekModel::fill(TrackState& track, bool seeking) {
    while (track.queue.size() < kFullQueue) {
        if (!deliverPacket(seeking)) {
            return false;
        }
    }
    return true;
}

void SeekModel::searchSyncFrame(int64_t timeUs) {
    TrackState& track = mTracks.front();
    int64_t searchUs = timeUs;
    bool atEnd = false;
    for (int retries = kRetries; retries >= 0;) {
        atEnd = !fill(track, true) || atEnd;
        bool tooLate = false;
        while (track.queue.size() >= 2 && !tooLate) {
            tooLate = track.queue.front().timeUs - searchUs > kToleranceUs;
            if (!tooLate && track.model.isSync(track.queue.front().packet)) {
                return;
            }
            if (!tooLate) {
                track.queue.pop_front();
            }
        }
        if (tooLate) {
            searchUs = retries == 0 ? timeUs : std::max<int64_t>(searchUs - kLeadUs, 0);
            --retries;
            seekToTime(searchUs);
        }
        if (atEnd) {
            return;
        }
    }
}

void SeekModel::seek(int64_t timeUs) {
    seekToTime(timeUs);
    if (mTracks.front().stream->isVideo) {
        searchSyncFrame(timeUs);
    }
}

std::optional<size_t> SeekModel::read(size_t index) {
    TrackState& track = mTracks.at(index);
    const bool wasShort = track.queue.size() <= 1;
    if (!fill(track, false) && wasShort) {
        return std::nullopt;
    }
    const size_t packet = track.queue.front().packet;
    track.queue.pop_front();
    return packet;
}

}  // namespace android::ogm::test
