// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <functional>
#include <optional>
#include <vector>

#include "Bytes.h"
#include "EventLog.h"

namespace android::ogm::test {

/** A read of the source; `index` counts the source's reads from 0. */
struct ReadRequest {
    size_t index;
    int64_t offset;
    size_t size;
};

/** Returns the number of bytes or the negative status that a read shall return; nothing: no fault.
 */
using ReadFault = std::function<std::optional<ssize_t>(const ReadRequest&)>;

/** The status that the platform's file source returns for an invalid read. */
inline constexpr ssize_t kReadRefused = -2147483648LL;

enum class Lasting { kOnce, kFromThenOn };

/** Read number `index` returns `result`: a negative status, 0, or fewer bytes than requested. */
ReadFault faultyRead(size_t index, ssize_t result, Lasting lasting = Lasting::kOnce);
/** Every read at exactly this offset returns `result`. */
ReadFault faultAtOffset(int64_t offset, ssize_t result);
/** The `hit`-th read at exactly this offset returns `result`; the first is number 1. */
ReadFault faultOnHit(int64_t offset, size_t hit, ssize_t result);
/** Every read of exactly this size returns `result`. */
ReadFault faultForSize(size_t size, ssize_t result);

/** How a read fails: it is refused, a byte is missing, or it returns nothing. */
enum class Failure { kRefused, kShort, kNothing };

/** Read number `index` fails; reads from number `budget` on return nothing, which ends each search.
 */
ReadFault sweptFault(size_t index, Failure failure, Lasting lasting, size_t budget);

/**
 * A data source over bytes in memory that behaves like the platform's file source: it refuses
 * negative offsets, and a read is short at the end of the bytes and returns 0 at or after it.
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
    /** `getSize` returns this status; it stores a size only if setReportedSize() was called. */
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
