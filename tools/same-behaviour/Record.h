// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/**
 * The record of a session: everything that can be observed of a plug-in, one line of text per
 * event. Usually only a digest of the lines is stored.
 *
 * The state is on a Tape in shared memory, so that it survives a process that ends in the middle.
 */
namespace android::ogm::trace {

enum class Kind : uint8_t {
    /** A call by the framework, and its result. */
    kCall,
    kResult,
    /** Calls by the plug-in. */
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
    /** How the next session is recorded. */
    struct Settings {
        Kinds leftOut = 0;
        /** The session ends at this event. */
        uint64_t maxEvents = 0;
        /** The descriptor that lines are written to; -1 for a digest only. */
        int textDescriptor = -1;
    };

    Settings settings;
    uint64_t digest;
    uint64_t events;
    size_t pendingSize;
    char pending[size_t{1} << 16];
};

/** Returns a tape in memory that is shared with child processes; never freed. */
Tape* newTape();

/** Begins a session on the tape; events are recorded there from now on. */
void beginRecord(Tape* tape, const Tape::Settings& settings);
/** Writes the pending lines; called by the process that outlives the session's. */
void flushRecord();

/** Why a process ended, as its exit status. */
enum ExitStatus { kReturned = 0, kRanOn = 3, kStoodStill = 4, kEndedItself = 5 };

/** Records an event. Ends the process if there are too many. */
void record(Kind kind, const char* format, ...) __attribute__((format(printf, 2, 3)));

/** Records the event as the last one and ends the process. */
[[noreturn]] void recordEnd(const char* text);

/** Returns the number of events of the session so far. */
uint64_t recordedEvents();

inline constexpr uint64_t kDigestStart = 0xCBF29CE484222325U;
/** Returns the 64-bit FNV-1a digest, continued from `digest`. */
uint64_t digestOf(const void* data, size_t size, uint64_t digest = kDigestStart);

/** Returns size, digest and first bytes as text for a line. */
std::string contentText(const void* data, size_t size);

}  // namespace android::ogm::trace
