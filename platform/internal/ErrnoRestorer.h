// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <errno.h>

namespace android {

/** Puts errno back to what it was when this object was made. */
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
