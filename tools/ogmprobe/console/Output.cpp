// SPDX-License-Identifier: Apache-2.0
#include "console/Output.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ogmprobe {
Output::Output(int descriptor) : mDescriptor(descriptor), mTerminal(isatty(descriptor) == 1) {}

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
            throw OutputClosed("the reader of the output is gone");
        } else if (errno != EINTR) {
            throw OutputError(fmt::format("cannot write the output: {}", std::strerror(errno)));
        }
    }
}

}  // namespace ogmprobe
