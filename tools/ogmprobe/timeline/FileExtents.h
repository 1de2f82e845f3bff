// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>

namespace ogmprobe::timeline {

/** Which parts of a file have been read, however often and in which order. */
class FileExtents {
  public:
    void add(uint64_t offset, uint64_t size);

    /** Returns beginning and end of each part, in the order of the file; parts do not touch. */
    const std::map<uint64_t, uint64_t>& parts() const { return mParts; }

  private:
    std::map<uint64_t, uint64_t> mParts;
};

}  // namespace ogmprobe::timeline
