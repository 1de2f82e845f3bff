// SPDX-License-Identifier: Apache-2.0
#include "Output.h"

#include <fmt/core.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "ExitCode.h"

namespace ogmprobe {
namespace {

std::atomic<Output*> gOutput{nullptr};

}  // namespace

Output::Output(int descriptor) : mDescriptor(descriptor), mTerminal(isatty(descriptor) == 1) {
    gOutput = this;
}

Output::~Output() {
    gOutput = nullptr;
}

void Output::write(std::string_view text) {
    if (text.size() > mBuffer.size() - mUsed) {
        flush();
    }
    if (text.size() > mBuffer.size()) {
        writeThrough(text);
        return;
    }
    std::memcpy(mBuffer.data() + mUsed, text.data(), text.size());
    mUsed += text.size();
    if (mTerminal) {
        flush();
    }
}

void Output::flush() {
    const std::string_view collected(mBuffer.data(), mUsed);
    mUsed = 0;
    writeThrough(collected);
}

void Output::writeThrough(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(mDescriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<size_t>(written));
        } else if (errno == EPIPE) {
            throw ClosedPipe{};
        } else if (errno != EINTR) {
            throw ProbeError(ExitCode::kFile,
                             fmt::format("cannot write the output: {}", std::strerror(errno)));
        }
    }
}

void Output::flushAfterDeath() noexcept {
    const Output* output = gOutput;
    if (output == nullptr) {
        return;
    }
    const char* from = output->mBuffer.data();
    size_t left = output->mUsed;
    while (left > 0) {
        const ssize_t written = ::write(output->mDescriptor, from, left);
        if (written <= 0) {
            return;
        }
        from += written;
        left -= static_cast<size_t>(written);
    }
}

}  // namespace ogmprobe
