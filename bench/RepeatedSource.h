// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "Content.h"
#include "Source.h"

namespace android::ogm::bench {

/**
 * A file of any length that takes no more memory than a short one: its data pages repeat, with
 * rising granule positions. Checksums are wrong; the plug-in does not check them.
 */
class RepeatedSource : public Source {
  public:
    RepeatedSource(const Content& content, size_t periodSize, int64_t size);

  protected:
    ssize_t readAt(int64_t offset, void* data, size_t size) override;
    int64_t size() const override { return mSize; }

  private:
    void readRun(int64_t offset, uint8_t* data, size_t size) const;
    void raiseGranule(uint8_t* header, uint64_t repetition) const;

    /** Header pages, then the data pages that repeat. */
    std::vector<uint8_t> mBytes;
    size_t mHeaderSize = 0;
    /** By serial number: how much a stream's granule position rises in each repetition. */
    std::map<uint32_t, uint64_t> mGranulesPerPeriod;
    int64_t mSize;
};

}  // namespace android::ogm::bench
