// SPDX-License-Identifier: Apache-2.0
#include "MemorySource.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace android::ogm::test {

namespace {

bool isHit(const ReadRequest& request, size_t index, Lasting lasting) {
    return lasting == Lasting::kOnce ? request.index == index : request.index >= index;
}

ssize_t resultOf(const ReadRequest& request, Failure failure) {
    switch (failure) {
        case Failure::kRefused:
            return kReadRefused;
        case Failure::kShort:
            return static_cast<ssize_t>(request.size) - (request.size > 0 ? 1 : 0);
        case Failure::kNothing:
            break;
    }
    return 0;
}

}  // namespace

ReadFault faultyRead(size_t index, ssize_t result, Lasting lasting) {
    return [=](const ReadRequest& request) -> std::optional<ssize_t> {
        return isHit(request, index, lasting) ? std::optional(result) : std::nullopt;
    };
}

ReadFault faultAtOffset(int64_t offset, ssize_t result) {
    return [=](const ReadRequest& request) -> std::optional<ssize_t> {
        return request.offset == offset ? std::optional(result) : std::nullopt;
    };
}

ReadFault faultOnHit(int64_t offset, size_t hit, ssize_t result) {
    return [=, hits = size_t{0}](const ReadRequest& request) mutable -> std::optional<ssize_t> {
        const bool faulty = request.offset == offset && ++hits == hit;
        return faulty ? std::optional(result) : std::nullopt;
    };
}

ReadFault faultForSize(size_t size, ssize_t result) {
    return [=](const ReadRequest& request) -> std::optional<ssize_t> {
        return request.size == size ? std::optional(result) : std::nullopt;
    };
}

ReadFault sweptFault(size_t index, Failure failure, Lasting lasting, size_t budget) {
    return [=](const ReadRequest& request) -> std::optional<ssize_t> {
        if (request.index >= budget) {
            return 0;
        }
        return isHit(request, index, lasting) ? std::optional(resultOf(request, failure))
                                              : std::nullopt;
    };
}

MemorySource::MemorySource(Bytes bytes, EventLog* events)
    : mTable{}, mBytes(std::move(bytes)), mEvents(events) {
    mTable.handle = this;
    mTable.readAt = [](void* handle, off64_t offset, void* data, size_t size) {
        return static_cast<MemorySource*>(handle)->readAt(offset, data, size);
    };
    mTable.getSize = [](void* handle, off64_t* size) {
        return static_cast<MemorySource*>(handle)->getSize(size);
    };
    mTable.flags = [](void*) -> uint32_t { return 0; };
    mTable.getUri = [](void*, char* text, size_t size) {
        if (size == 0) {
            return false;
        }
        text[0] = '\0';
        return true;
    };
}

ssize_t MemorySource::readAt(int64_t offset, void* data, size_t size) {
    const ReadRequest request{mReadCount++, offset, size};
    const ssize_t result = serve(request, data);
    if (mEvents != nullptr) {
        mEvents->add(ReadCall{offset, size, result});
    }
    return result;
}

ssize_t MemorySource::serve(const ReadRequest& request, void* data) const {
    const std::optional<ssize_t> fault = mFault ? mFault(request) : std::nullopt;
    if (fault && *fault < 0) {
        return *fault;
    }
    if (request.offset < 0) {
        return kReadRefused;
    }
    const auto offset = static_cast<size_t>(request.offset);
    if (offset >= mBytes.size()) {
        return 0;
    }
    size_t count = std::min(request.size, mBytes.size() - offset);
    if (fault) {
        count = std::min(count, static_cast<size_t>(*fault));
    }
    if (count > 0) {
        memcpy(data, mBytes.data() + offset, count);
    }
    return static_cast<ssize_t>(count);
}

status_t MemorySource::getSize(off64_t* size) const {
    if (mSizeStatus == OK || mReportedSize) {
        *size = mReportedSize.value_or(static_cast<int64_t>(mBytes.size()));
    }
    return mSizeStatus;
}

}  // namespace android::ogm::test
