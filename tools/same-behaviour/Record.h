// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/**
 * The record of a session: everything that a plug-in does and that somebody outside of it can see,
 * one line of text an event. As a rule only a digest of the lines is kept.
 *
 * The state lies on a Tape in shared memory, so that it outlasts a process that ends in the middle.
 */
namespace android::ogm::trace {

enum class Kind : uint8_t {
    /** What the framework's part calls, and what the call gives. */
    kCall,
    kResult,
    /** What the plug-in calls. */
    kLog,
    kSource,
    kFormat,
    kGroup,
    kBuffer,
    kProperty,
    kDump,
    /** How the session ended. */
    kEnd,
};

std::string_view nameOf(Kind kind);
std::optional<Kind> kindNamed(std::string_view name);

/** A set of kinds. */
using Kinds = uint32_t;
inline constexpr Kinds setOf(Kind kind) {
    return 1U << static_cast<unsigned>(kind);
}

struct Tape {
    /** What the next session is to be recorded with. */
    struct Settings {
        Kinds leftOut = 0;
        /** The session ends with this event. */
        uint64_t maxEvents = 0;
        /** The descriptor that the lines go to; -1 for the digest alone. */
        int textDescriptor = -1;
    };

    Settings settings;
    uint64_t digest;
    uint64_t events;
    size_t pendingSize;
    char pending[size_t{1} << 16];
};

/** A tape in memory that this process shares with those it makes; never freed. */
Tape* newTape();

/** Begins a session on the tape; what is recorded from now on goes there. */
void beginRecord(Tape* tape, const Tape::Settings& settings);
/** Writes the lines that wait; for the process that outlasts the session. */
void flushRecord();

/** How a process says by its exit status why it ended. */
enum ExitStatus { kReturned = 0, kRanOn = 3, kStoodStill = 4, kEndedItself = 5 };

/** Records an event. The process ends when there are too many. */
void record(Kind kind, const char* format, ...) __attribute__((format(printf, 2, 3)));

/** Records the event as the last one and ends the process. */
[[noreturn]] void recordEnd(const char* text);

/** Events of the session so far. */
uint64_t recordedEvents();

inline constexpr uint64_t kDigestStart = 0xCBF29CE484222325U;
/** 64-bit FNV-1a, continued from `digest`. */
uint64_t digestOf(const void* data, size_t size, uint64_t digest = kDigestStart);

/** Size, digest and first bytes in a form for a line. */
std::string contentText(const void* data, size_t size);

}  // namespace android::ogm::trace
