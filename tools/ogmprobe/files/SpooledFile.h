// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "files/Descriptor.h"
#include "files/LeftoverFiles.h"

namespace ogmprobe {

/** A temporary copy of a pipe's contents, deleted with this object. */
class SpooledFile {
  public:
    /** Larger than any film of this kind, smaller than most disks. */
    static constexpr uint64_t kLimit = uint64_t{16} << 30;

    /**
     * Reads the pipe to its end. Throws `ProbeError` with `kFile`, also if the pipe exceeds the
     * limit. `name` is the pipe's name in messages.
     */
    SpooledFile(int pipe, const std::string& name, uint64_t limit = kLimit);

    const std::string& path() const { return mPath; }

  private:
    Descriptor makeFile(const std::string& name);

    std::string mPath;
    LeftoverFile mLeftover;
};

}  // namespace ogmprobe
