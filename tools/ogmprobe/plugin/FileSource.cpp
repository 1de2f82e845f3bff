// SPDX-License-Identifier: Apache-2.0
#include "plugin/FileSource.h"

#include <android/log.h>
#include <utils/Errors.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <optional>

namespace ogmprobe {
namespace {

// The flag by which the framework marks a local file.
constexpr uint32_t kIsLocalFile = 16;

}  // namespace

FileSource::FileSource(const std::string& path) : mFile(path), mTable(makeTable(this)) {}

ssize_t FileSource::readAt(off64_t offset, void* data, size_t size) {
    const bool searches = size == kSearchedSize && !mRepeated.isLacingTable(offset);
    if (mShortens) {
        offset = offsetToRead(offset, searches);
    }
    ++mReads;
    auto* const bytes = static_cast<uint8_t*>(data);
    const ssize_t got = readUncounted(offset, bytes, size);
    if (mShortens && !searches) {
        noteRead(offset, {bytes, static_cast<size_t>(std::max<ssize_t>(got, 0))});
    }
    if (got > 0) {
        mBytesRead += static_cast<uint64_t>(got);
        mReadUpTo = static_cast<uint64_t>(offset + got);
    }
    noteEndOfSearch(offset, size, got);
    ReadWatch::add(offset, size, got);
    searchOnFrom(offset, size, got);
    return got;
}

off64_t FileSource::offsetToRead(off64_t offset, bool searches) {
    if (!searches) {
        return offset + mRepeated.ahead();
    }
    return ReadWatch::continues(offset) ? endOfVainSearch(offset) : beginSearch(offset);
}

/** Where to do the first read of a search. */
off64_t FileSource::beginSearch(off64_t offset) {
    const off64_t ahead = mRepeated.begin(offset);
    if (ahead == 0) {
        logRepeatedSearch();
        return offset;
    }
    ReadWatch::add(offset, kSearchedSize, static_cast<int64_t>(kSearchedSize));
    ReadWatch::goOn(offset + ahead - 1);
    mSearchReads += static_cast<uint64_t>(ahead);
    return offset + ahead;
}

/** Replaces the plug-in's own log lines about the shortened searches. */
void FileSource::logRepeatedSearch() {
    if (const uint64_t rounds = mRepeated.takeRounds(); rounds != 0) {
        __android_log_print(ANDROID_LOG_INFO, "ogmprobe",
                            "%" PRIu64 " more searches of the same junk for the page at %" PRId64
                            " were not done in full",
                            rounds, static_cast<int64_t>(mRepeated.found()));
    }
}

void FileSource::noteRead(off64_t offset, std::span<const uint8_t> bytes) {
    const auto searchedUpTo = static_cast<off64_t>(mReadUpTo - kSearchedSize);
    mRepeated.read(offset, bytes, searchedUpTo);
}

/** To be called before the read becomes part of a run. */
void FileSource::noteEndOfSearch(off64_t offset, size_t size, ssize_t got) {
    const bool isShort = size == kSearchedSize && got >= 0 && got < static_cast<ssize_t>(size);
    if (isShort && isLongSearch(offset)) {
        mVainSearchBegin = PluginCall::vitals().runOffset.get();
        mVainSearchEnd = offset;
    }
}

/** Returns whether the read continues a long search. */
bool FileSource::isLongSearch(off64_t offset) {
    const SourceRead run = PluginCall::vitals().run();
    return ReadWatch::continues(offset) && run.size == kSearchedSize &&
           run.result == static_cast<int64_t>(kSearchedSize) && run.count >= kLongSearch;
}

/** Returns where to read for a search that is known to find nothing; else the offset itself. */
off64_t FileSource::endOfVainSearch(off64_t offset) {
    const bool isKnown = offset < mVainSearchEnd && isLongSearch(offset) &&
                         PluginCall::vitals().runOffset.get() == mVainSearchBegin;
    if (!isKnown) {
        return offset;
    }
    mSearchReads += static_cast<uint64_t>(mVainSearchEnd - offset);
    ReadWatch::goOn(mVainSearchEnd - 1);
    return mVainSearchEnd;
}

/** Prepares the next reads if this one belongs to a search. */
void FileSource::searchOnFrom(off64_t offset, size_t size, ssize_t got) {
    mSearchEnd = kNoSearch;
    if (size != kSearchedSize || got != static_cast<ssize_t>(kSearchedSize)) {
        return;
    }
    const std::span<const uint8_t> bytes = mBlocks.from(static_cast<uint64_t>(offset));
    if (bytes.size() >= kSearchedSize) {
        mSearched = bytes.data();
        mSearchBegin = offset;
        mSearchEnd = offset + static_cast<off64_t>(bytes.size() - kSearchedSize + 1);
    }
}

ssize_t FileSource::readUncounted(off64_t offset, uint8_t* data, size_t size) {
    if (offset < 0) {
        return android::UNKNOWN_ERROR;
    }
    const auto start = static_cast<uint64_t>(offset);
    const std::span<uint8_t> bytes(data, std::min<uint64_t>(size, mFile.sizeFrom(start)));
    if (bytes.size() < BlockCache::kBlockSize && readFromBlocks(start, bytes)) {
        return static_cast<ssize_t>(bytes.size());
    }
    const std::optional<size_t> got = mFile.read(start, bytes);
    if (!got) {
        mError = mError != 0 ? mError : errno;
        return android::UNKNOWN_ERROR;
    }
    return static_cast<ssize_t>(*got);
}

/** Returns false if a block cannot be read; less than a block may still be readable. */
bool FileSource::readFromBlocks(uint64_t offset, std::span<uint8_t> bytes) {
    while (!bytes.empty()) {
        if (mBlocks.from(offset).empty() && !mBlocks.load(offset)) {
            return false;
        }
        const std::span<const uint8_t> cached = mBlocks.from(offset);
        const size_t piece = std::min(bytes.size(), cached.size());
        std::memcpy(bytes.data(), cached.data(), piece);
        offset += piece;
        bytes = bytes.subspan(piece);
    }
    return true;
}

android::CDataSource FileSource::makeTable(FileSource* source) {
    android::CDataSource table = {};
    table.handle = source;
    table.readAt = [](void* handle, off64_t offset, void* data, size_t size) -> ssize_t {
        auto* const source = static_cast<FileSource*>(handle);
        return size == kSearchedSize && source->searchOn(offset, data)
                       ? static_cast<ssize_t>(kSearchedSize)
                       : source->readAt(offset, data, size);
    };
    table.getSize = [](void* handle, off64_t* size) -> android::status_t {
        *size = static_cast<off64_t>(static_cast<FileSource*>(handle)->size());
        return android::OK;
    };
    table.flags = [](void*) -> uint32_t { return kIsLocalFile; };
    table.getUri = [](void*, char* uri, size_t size) -> bool {
        if (size == 0) {
            return false;
        }
        *uri = '\0';
        return true;
    };
    return table;
}

}  // namespace ogmprobe
