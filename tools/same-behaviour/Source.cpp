// SPDX-License-Identifier: Apache-2.0
#include "Source.h"

#include <algorithm>
#include <cstring>

#include "Record.h"

namespace android::ogm::trace {

namespace {

constexpr ssize_t kRefused = -2147483648LL;
constexpr ssize_t kIoError = -1004;
constexpr uint32_t kLocalFile = 16;

bool hits(const fuzz::Fault& fault, size_t read) {
    return read >= fault.firstRead && (fault.count == 0 || read - fault.firstRead < fault.count);
}

}  // namespace

Source::Source(const Plan& plan) : mTable{}, mPlan(plan) {
    mTable.handle = this;
    mTable.readAt = [](void* handle, off64_t offset, void* data, size_t size) {
        return static_cast<Source*>(handle)->readAt(offset, data, size);
    };
    mTable.getSize = [](void* handle, off64_t* size) {
        return static_cast<Source*>(handle)->getSize(size);
    };
    mTable.flags = [](void*) {
        record(Kind::kSource, "flags");
        return kLocalFile;
    };
    mTable.getUri = [](void*, char* text, size_t size) {
        record(Kind::kSource, "get URI into %zu", size);
        if (size > 0) {
            *text = '\0';
        }
        return size > 0;
    };
}

ssize_t Source::readAt(int64_t offset, void* data, size_t size) {
    const ssize_t result = serve(offset, data, size);
    ++mReads;
    record(Kind::kSource, "read %zu at %lld -> %zd", size, static_cast<long long>(offset), result);
    return result;
}

ssize_t Source::serve(int64_t offset, void* data, size_t size) const {
    const size_t begin = offset < 0 ? mPlan.file.size()
                                    : std::min(static_cast<size_t>(offset), mPlan.file.size());
    const size_t available = std::min(size, mPlan.file.size() - begin);
    const ssize_t natural = offset < 0 ? kRefused : static_cast<ssize_t>(available);
    const ssize_t result = faultyResult(size, available).value_or(natural);
    if (result > 0) {
        memcpy(data, mPlan.file.data() + begin, static_cast<size_t>(result));
    }
    return result;
}

std::optional<ssize_t> Source::faultyResult(size_t size, size_t available) const {
    for (const fuzz::Fault& fault : mPlan.faults) {
        if (!hits(fault, mReads)) {
            continue;
        }
        switch (fault.kind) {
            case fuzz::FaultKind::kNothing:
                return 0;
            case fuzz::FaultKind::kOneShort:
                return std::min(available, std::max<size_t>(size, 1) - 1);
            case fuzz::FaultKind::kHalf:
                return std::min(available, size / 2);
            case fuzz::FaultKind::kIoError:
                return kIoError;
            case fuzz::FaultKind::kRefused:
                return kRefused;
        }
    }
    return std::nullopt;
}

status_t Source::getSize(off64_t* size) const {
    const std::optional<int64_t>& stored = mPlan.size.stored;
    if (stored) {
        *size = *stored;
    }
    record(Kind::kSource, "get size -> %d, %s", mPlan.size.status,
           stored ? std::to_string(*stored).c_str() : "nothing stored");
    return mPlan.size.status;
}

}  // namespace android::ogm::trace
