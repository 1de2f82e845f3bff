// SPDX-License-Identifier: Apache-2.0
#include "Record.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <new>
#include <stdexcept>

namespace android::ogm::trace {

namespace {

constexpr std::string_view kKindNames[] = {"call",  "result", "log",      "source", "format",
                                           "group", "buffer", "property", "dump",   "end"};

// Log lines are cut at 1023 bytes; the rest is for the text around them.
constexpr size_t kLineSize = 2048;

Tape* gTape = nullptr;

void writePending() {
    const char* next = gTape->pending;
    while (gTape->pendingSize > 0) {
        const ssize_t written = write(gTape->settings.textDescriptor, next, gTape->pendingSize);
        if (written <= 0) {
            break;
        }
        next += written;
        gTape->pendingSize -= static_cast<size_t>(written);
    }
    gTape->pendingSize = 0;
}

void keepText(const char* line, size_t size) {
    if (gTape->pendingSize + size > sizeof(gTape->pending)) {
        writePending();
    }
    memcpy(gTape->pending + gTape->pendingSize, line, size);
    gTape->pendingSize += size;
}

void recordLine(Kind kind, const char* format, va_list arguments) {
    char line[kLineSize];
    const std::string_view name = nameOf(kind);
    constexpr size_t kTextBegin = 9;
    memset(line, ' ', kTextBegin);
    memcpy(line, name.data(), name.size());
    const int length = vsnprintf(line + kTextBegin, sizeof(line) - kTextBegin, format, arguments);
    size_t size = kTextBegin + static_cast<size_t>(std::max(length, 0));
    size = std::min(size, sizeof(line) - 1);
    // One event, one line.
    std::replace(line, line + size, '\n', '~');
    line[size++] = '\n';
    gTape->digest = digestOf(line, size, gTape->digest);
    ++gTape->events;
    if (gTape->settings.textDescriptor >= 0) {
        keepText(line, size);
    }
}

}  // namespace

std::string_view nameOf(Kind kind) {
    return kKindNames[static_cast<size_t>(kind)];
}

std::optional<Kind> kindNamed(std::string_view name) {
    const auto* const found = std::find(std::begin(kKindNames), std::end(kKindNames), name);
    if (found == std::end(kKindNames)) {
        return std::nullopt;
    }
    return static_cast<Kind>(found - std::begin(kKindNames));
}

Tape* newTape() {
    void* memory =
            mmap(nullptr, sizeof(Tape), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    return new (memory) Tape{};
}

void beginRecord(Tape* tape, const Tape::Settings& settings) {
    gTape = tape;
    tape->settings = settings;
    tape->digest = kDigestStart;
    tape->events = 0;
    tape->pendingSize = 0;
}

void flushRecord() {
    writePending();
}

void record(Kind kind, const char* format, ...) {
    if (gTape == nullptr || (gTape->settings.leftOut & setOf(kind)) != 0) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    recordLine(kind, format, arguments);
    va_end(arguments);
    if (kind != Kind::kEnd && gTape->events >= gTape->settings.maxEvents) {
        _exit(kRanOn);
    }
}

void recordEnd(const char* text) {
    record(Kind::kEnd, "%s", text);
    _exit(kEndedItself);
}

uint64_t recordedEvents() {
    return gTape->events;
}

uint64_t digestOf(const void* data, size_t size, uint64_t digest) {
    constexpr uint64_t kPrime = 0x100000001B3U;
    const auto* const bytes = static_cast<const uint8_t*>(data);
    for (size_t i = 0; i < size; ++i) {
        digest = (digest ^ bytes[i]) * kPrime;
    }
    return digest;
}

std::string contentText(const void* data, size_t size) {
    constexpr size_t kShown = 8;
    constexpr size_t kTextSize = 96;
    char text[kTextSize];
    int length = snprintf(text, sizeof(text), "%zu bytes, digest %016llx:", size,
                          static_cast<unsigned long long>(digestOf(data, size)));
    for (size_t i = 0; i < std::min(size, kShown); ++i) {
        length += snprintf(text + length, sizeof(text) - static_cast<size_t>(length), " %02x",
                           static_cast<const uint8_t*>(data)[i]);
    }
    return text;
}

}  // namespace android::ogm::trace
