// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <csignal>

namespace ogmprobe {

/**
 * A file that is only needed for a time. It is removed with this object, or when a signal ends the
 * program, unless forget() was called. For one thread.
 */
class LeftoverFile {
  public:
    LeftoverFile() = default;
    ~LeftoverFile();

    LeftoverFile(const LeftoverFile&) = delete;
    LeftoverFile& operator=(const LeftoverFile&) = delete;

    /** The text must outlive this object. Call once. */
    void watch(const char* path);
    void forget();

  private:
    friend void removeLeftoverFilesOnSignals();
    friend void removeOwnLeftoverFilesOnTermination();

    static void onSignal(int number);

    // A linked list, because a signal handler may iterate over it at any time.
    static std::atomic<LeftoverFile*> sFirst;
    const char* mPath = nullptr;
    std::atomic<LeftoverFile*> mNext{nullptr};
};

/**
 * During its lifetime, blocks the signals that remove the files. For the time between creating a
 * file and registering it.
 */
class HeldSignals {
  public:
    HeldSignals();
    ~HeldSignals();

    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

  private:
    sigset_t mBefore = {};
};

/** Makes SIGINT, SIGTERM and SIGHUP remove the files before they end the program. Call once. */
void removeLeftoverFilesOnSignals();

/**
 * For a process that was just forked: forgets the parent's files, and makes SIGTERM remove the
 * files that this process registers from now on.
 */
void removeOwnLeftoverFilesOnTermination();

}  // namespace ogmprobe
