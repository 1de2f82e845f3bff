// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <functional>
#include <optional>
#include <vector>

#include "Bytes.h"
#include "EventLog.h"

namespace android::ogm::test {

/** What the source is asked for; `index` counts the reads since the source was made, from 0. */
struct ReadRequest {
    size_t index;
    int64_t offset;
    size_t size;
};

/** Says how many bytes a read may give, or which negative status it gives; nothing: all of them. */
using ReadFault = std::function<std::optional<ssize_t>(const ReadRequest&)>;

/** The status that the platform's file source gives for a read that cannot be done. */
inline constexpr ssize_t kReadRefused = -2147483648LL;

enum class Lasting { kOnce, kFromThenOn };

/** The read number `index` gives `result`: a negative status, 0, or fewer bytes than asked for. */
ReadFault faultyRead(size_t index, ssize_t result, Lasting lasting = Lasting::kOnce);
/** Every read at exactly this offset gives `result`. */
ReadFault faultAtOffset(int64_t offset, ssize_t result);
/** The `hit`-th read at exactly this offset gives `result`; the first is number 1. */
ReadFault faultOnHit(int64_t offset, size_t hit, ssize_t result);
/** Every read of exactly this size gives `result`. */
ReadFault faultForSize(size_t size, ssize_t result);

/**
 * A data source over bytes in memory that behaves as the platform's file source: a negative offset
 * is refused, a read is short at the end and gives 0 at or past it.
 */
class MemorySource {
  public:
    /** Reads are recorded in `events` unless it is null. */
    explicit MemorySource(Bytes bytes, EventLog* events = nullptr);
    MemorySource(const MemorySource&) = delete;
    MemorySource& operator=(const MemorySource&) = delete;

    CDataSource* table() { return &mTable; }

    void setFault(ReadFault fault) { mFault = std::move(fault); }
    void clearFault() { mFault = nullptr; }
    /** `getSize` stores this size, whatever the bytes are. */
    void setReportedSize(int64_t size) { mReportedSize = size; }
    /** `getSize` returns this status and stores nothing but a reported size. */
    void setSizeStatus(status_t status) { mSizeStatus = status; }

    size_t readCount() const { return mReadCount; }

  private:
    ssize_t readAt(int64_t offset, void* data, size_t size);
    ssize_t serve(const ReadRequest& request, void* data) const;
    status_t getSize(off64_t* size) const;

    CDataSource mTable;
    Bytes mBytes;
    EventLog* mEvents;
    ReadFault mFault;
    std::optional<int64_t> mReportedSize;
    status_t mSizeStatus = OK;
    size_t mReadCount = 0;
};

}  // namespace android::ogm::test
