// SPDX-License-Identifier: Apache-2.0
#include "ScriptedSource.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "Ends.h"
#include "codec/Ogmavc_utils.h"

namespace android::ogm::fuzz {

namespace {

// Enough for a whole session with a file of the usual sizes. Few enough that searches which go
// through all buffered bytes again for each packet stay fast.
constexpr size_t kReadBudget = 6000;
constexpr uint64_t kByteBudget = 65536;
constexpr uint64_t kBytesPerFileByte = 8;
/** A call that ends after the source has fallen silent needs far fewer. */
constexpr size_t kMaxReadsInSilence = 2000;

constexpr ssize_t kRefused = -2147483648LL;
constexpr ssize_t kIoError = -1004;
constexpr status_t kUnsupported = -1010;
constexpr uint32_t kLocalFile = 16;

// The log lines before and after the search for a codec's configuration.
constexpr std::string_view kVideoSearchBegins = "OGV_VIDEO_MP4:TYPE:%d, serialNo=%d";
constexpr std::string_view kAudioSearchBegins = "MPEG audio, type:%d,serialNo=%d";
constexpr std::string_view kPayloadIsNext = "pageDataSize = %d";

/** The position of the search has 8 bits. */
constexpr size_t kSearchedPositions = 256;
/** With more bytes than this the search never ends. */
constexpr size_t kMaxSearched = 257;

size_t startCodePosition(ByteView data) {
    size_t position = 0;
    while (position < kSearchedPositions && !data.holds(kStartCodePrefix, position)) {
        ++position;
    }
    return position;
}

}  // namespace

bool searchesForever(ByteView data) {
    return data.size() > kMaxSearched && startCodePosition(data) == kSearchedPositions;
}

ScriptedSource::ScriptedSource(const SessionInput& input, const Bytes& file)
    : mTable{}, mInput(input), mFile(file) {
    mTable.handle = this;
    mTable.readAt = [](void* handle, off64_t offset, void* data, size_t size) {
        return static_cast<ScriptedSource*>(handle)->readAt(offset, static_cast<uint8_t*>(data),
                                                            size);
    };
    mTable.getSize = [](void* handle, off64_t* size) -> status_t {
        const auto* const self = static_cast<ScriptedSource*>(handle);
        *size = self->mInput.reportedSize(self->mFile.size());
        return self->mInput.sizeKind == ReportedSize::kUnknown ? kUnsupported : OK;
    };
    mTable.flags = [](void*) { return kLocalFile; };
    mTable.getUri = [](void*, char* text, size_t size) {
        if (size > 0) {
            *text = '\0';
        }
        return size > 0;
    };
    setLogObserver(this);
}

bool ScriptedSource::isSilent() const {
    return mReads >= kReadBudget || mDelivered >= kByteBudget + kBytesPerFileByte * mFile.size();
}

ssize_t ScriptedSource::readAt(int64_t offset, uint8_t* data, size_t size) {
    const ssize_t count = serve(offset, data, size);
    mDelivered += static_cast<uint64_t>(std::max<ssize_t>(count, 0));
    if (mPayloadIsNext) {
        mPayloadIsNext = false;
        watchPayload(data, size, count);
    }
    return count;
}

ssize_t ScriptedSource::serve(int64_t offset, uint8_t* data, size_t size) {
    const bool silent = isSilent();
    ++mReads;
    if (silent) {
        endSilence();
        return 0;
    }
    if (offset < 0) {
        return kRefused;
    }
    const size_t begin = std::min(static_cast<size_t>(offset), mFile.size());
    const size_t available = std::min(size, mFile.size() - begin);
    const ssize_t count = applyFaults(size, static_cast<ssize_t>(available));
    if (count > 0) {
        std::memcpy(data, mFile.data() + begin, static_cast<size_t>(count));
    }
    return count;
}

/** Ends a call that still reads although the source is silent. */
void ScriptedSource::endSilence() {
    if (++mReadsInSilence <= kMaxReadsInSilence) {
        return;
    }
    // The end of a file of unknown size is treated as the beginning, so the scan of a seek begins
    // there again and again.
    const bool sizeIsKnown =
            mInput.sizeKind != ReportedSize::kUnknown && mInput.reportedSize(mFile.size()) != 0;
    require(!sizeIsKnown, "a call goes on reading a source that gives nothing any more");
    throw IntendedEnd{};
}

ssize_t ScriptedSource::applyFaults(size_t size, ssize_t available) const {
    const size_t read = mReads - 1;
    for (const Fault& fault : mInput.faults) {
        if (read < fault.firstRead || (fault.count != 0 && read - fault.firstRead >= fault.count)) {
            continue;
        }
        const auto requested = static_cast<ssize_t>(size);
        switch (fault.kind) {
            case FaultKind::kNothing:
                return 0;
            case FaultKind::kOneShort:
                return std::min(available, std::max<ssize_t>(requested - 1, 0));
            case FaultKind::kHalf:
                return std::min(available, requested / 2);
            case FaultKind::kIoError:
                return kIoError;
            case FaultKind::kRefused:
                return kRefused;
        }
    }
    return available;
}

void ScriptedSource::onLogLine(const char* format) {
    if (format == kPayloadIsNext) {
        mPayloadIsNext = mSearching;
    } else if (format == kVideoSearchBegins) {
        mSearching = true;
        mSearched.clear();
    } else if (format == kAudioSearchBegins) {
        mSearching = false;
    }
}

void ScriptedSource::watchPayload(const uint8_t* data, size_t size, ssize_t count) {
    if (count != static_cast<ssize_t>(size)) {
        return;
    }
    mSearched.insert(mSearched.end(), data, data + size);
    const ByteView searched(mSearched.data(), mSearched.size());
    if (searchesForever(searched)) {
        throw IntendedEnd{};
    }
    // A start code that was found once is found again, or the one after the removed bytes is.
    mSearching = startCodePosition(searched) == kSearchedPositions;
}

}  // namespace android::ogm::fuzz
