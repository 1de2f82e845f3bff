// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdio.h>
#include <unistd.h>

#include <string>

/** Collects what is written to file descriptor 2 during its lifetime. */
class CapturedStderr {
  public:
    CapturedStderr() : mFile(tmpfile()), mSavedDescriptor(dup(STDERR_FILENO)) {
        fflush(stderr);
        dup2(fileno(mFile), STDERR_FILENO);
    }

    ~CapturedStderr() {
        fflush(stderr);
        dup2(mSavedDescriptor, STDERR_FILENO);
        close(mSavedDescriptor);
        fclose(mFile);
    }

    CapturedStderr(const CapturedStderr&) = delete;
    CapturedStderr& operator=(const CapturedStderr&) = delete;

    /** Everything written so far. */
    std::string text() const {
        fflush(stderr);
        std::string all;
        char piece[256];
        ssize_t size = 0;
        while ((size = pread(fileno(mFile), piece, sizeof piece, static_cast<off_t>(all.size()))) >
               0) {
            all.append(piece, static_cast<size_t>(size));
        }
        return all;
    }

  private:
    FILE* const mFile;
    const int mSavedDescriptor;
};
