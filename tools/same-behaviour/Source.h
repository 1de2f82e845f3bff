// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include "Plan.h"

namespace android::ogm::trace {

/** The file of a session as the framework passes it to a plug-in, with the session's faults. */
class Source {
  public:
    explicit Source(const Plan& plan);
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    CDataSource* table() { return &mTable; }

  private:
    ssize_t readAt(int64_t offset, void* data, size_t size);
    ssize_t serve(int64_t offset, void* data, size_t size) const;
    std::optional<ssize_t> faultyResult(size_t size, size_t available) const;
    status_t getSize(off64_t* size) const;

    CDataSource mTable;
    const Plan& mPlan;
    size_t mReads = 0;
};

}  // namespace android::ogm::trace
