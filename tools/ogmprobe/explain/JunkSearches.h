// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "explain/OggFile.h"
#include "records/Records.h"

namespace ogmprobe {

/**
 * Counts the searches for a page, while packets are read, that begin within junk or within the page
 * after it. They happen because the plug-in does not add the length of junk when it continues from
 * the page after it.
 */
class JunkSearches {
  public:
    struct Cost {
        uint64_t searches = 0;
        uint64_t reads = 0;
    };

    /** The file must outlive this object. */
    explicit JunkSearches(const OggFile& file) : mFile(file) {}

    void add(const SourceRead& read);

    /** By the index of the junk. */
    const std::map<size_t, Cost>& costs() const { return mCosts; }

  private:
    const OggFile& mFile;
    std::map<size_t, Cost> mCosts;
};

}  // namespace ogmprobe
