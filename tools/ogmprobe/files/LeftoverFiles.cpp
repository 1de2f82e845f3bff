// SPDX-License-Identifier: Apache-2.0
#include "files/LeftoverFiles.h"

#include <unistd.h>

#include <array>
#include <csignal>

namespace ogmprobe {
namespace {

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

std::atomic<LeftoverFile*> LeftoverFile::sFirst{nullptr};

LeftoverFile::~LeftoverFile() {
    if (mPath != nullptr) {
        unlink(mPath);
        forget();
    }
}

void LeftoverFile::watch(const char* path) {
    mPath = path;
    mNext = sFirst.load();
    sFirst = this;
}

void LeftoverFile::forget() {
    std::atomic<LeftoverFile*>* link = &sFirst;
    while (*link != this) {
        link = &link->load()->mNext;
    }
    *link = mNext.load();
    mPath = nullptr;
}

void LeftoverFile::onSignal(int number) {
    for (const LeftoverFile* file = sFirst; file != nullptr; file = file->mNext) {
        unlink(file->mPath);
    }
    std::signal(number, SIG_DFL);
    std::raise(number);
}

HeldSignals::HeldSignals() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int number : kEndingSignals) {
        sigaddset(&ending, number);
    }
    sigprocmask(SIG_BLOCK, &ending, &mBefore);
}

HeldSignals::~HeldSignals() {
    sigprocmask(SIG_SETMASK, &mBefore, nullptr);
}

void removeLeftoverFilesOnSignals() {
    for (const int number : kEndingSignals) {
        // A signal that is ignored, as with nohup, stays ignored.
        if (std::signal(number, LeftoverFile::onSignal) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

void removeOwnLeftoverFilesOnTermination() {
    LeftoverFile::sFirst = nullptr;
    std::signal(SIGTERM, LeftoverFile::onSignal);
}

}  // namespace ogmprobe
