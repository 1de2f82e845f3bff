// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <csignal>

namespace ogmprobe {

/**
 * A file that is only needed for a time: it is removed with this object, or when a signal ends the
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

    // A list, because a signal handler can walk along it at any time.
    static std::atomic<LeftoverFile*> sFirst;
    const char* mPath = nullptr;
    std::atomic<LeftoverFile*> mNext{nullptr};
};

/**
 * Blocks the signals that remove the files during its lifetime: for the moment between making a
 * file and watching it.
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
 * For a process that was just forked: forgets the parent's files, and makes SIGTERM remove those
 * that this process watches from now on.
 */
void removeOwnLeftoverFilesOnTermination();

}  // namespace ogmprobe
