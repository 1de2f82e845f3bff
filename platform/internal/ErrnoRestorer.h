// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <errno.h>

namespace android {

/** Restores errno, when destroyed, to its value at construction. */
class ErrnoRestorer {
  public:
    ErrnoRestorer() = default;
    ~ErrnoRestorer() { errno = mSaved; }
    ErrnoRestorer(const ErrnoRestorer&) = delete;
    ErrnoRestorer& operator=(const ErrnoRestorer&) = delete;

  private:
    const int mSaved = errno;
};

}  // namespace android
