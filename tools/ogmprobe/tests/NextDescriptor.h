// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace ogmprobe::test {

/** The descriptor that the file opened next gets. Its reads can be made to fail with `EBADF`. */
class NextDescriptor {
  public:
    NextDescriptor() : mNumber(dup(STDERR_FILENO)) { close(mNumber); }

    void makeUnreadable() const {
        const int unreadable = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(unreadable, mNumber);
        close(unreadable);
    }

  private:
    const int mNumber;
};

}  // namespace ogmprobe::test
