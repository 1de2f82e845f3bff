// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <csignal>

namespace ogmprobe {

/**
 * A file that must not outlive its purpose: it is removed with this object, or when a signal tells
 * the program to end, unless it is forgotten before. For one thread.
 */
class LeftoverFile {
  public:
    LeftoverFile() = default;
    ~LeftoverFile();

    LeftoverFile(const LeftoverFile&) = delete;
    LeftoverFile& operator=(const LeftoverFile&) = delete;

    /** The text must live as long as this object. Once only. */
    void watch(const char* path);
    void forget();

  private:
    friend void removeLeftoverFilesOnSignals();

    static void onSignal(int number);

    // A list, because a signal handler can walk along it at any time.
    static std::atomic<LeftoverFile*> sFirst;
    const char* mPath = nullptr;
    std::atomic<LeftoverFile*> mNext{nullptr};
};

/**
 * Holds back the signals that remove the files while it lives: for the moment between making a file
 * and watching it.
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

/** To be called once: from now on SIGINT, SIGTERM and SIGHUP remove the files, then end as usual.
 */
void removeLeftoverFilesOnSignals();

}  // namespace ogmprobe
