// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <vector>

#include "InputReader.h"

/**
 * An input of the whole plug-in's target: how the data source behaves, the calls, and the file. Any
 * bytes are a valid input; missing bytes are 0.
 *
 *     1 byte    options, and in bits 2 and 3 the number of faults
 *     1 byte    which size the source reports
 *     2 bytes   its value, little-endian
 *     4 bytes   each fault: kind, first read (2 bytes), number of reads (0: all from then on)
 *     1 byte    number of calls
 *     4 bytes   each call: operation, argument, time (2 bytes)
 *     the rest  the file
 */
namespace android::ogm::fuzz {

enum class ReportedSize : uint8_t {
    kTrue,
    /** An error, with -1 stored. */
    kUnknown,
    kZero,
    kNegative,
    /** The size less, or plus, the value. */
    kSmaller,
    kLarger,
    /** The size with which the scan for the duration begins at the value. */
    kWithTail,
    kHuge,
};

enum class FaultKind : uint8_t { kNothing, kOneShort, kHalf, kIoError, kRefused };
inline constexpr size_t kFaultKinds = 5;

struct Fault {
    FaultKind kind = FaultKind::kNothing;
    uint16_t firstRead = 0;
    uint8_t count = 0;
};

enum class Operation : uint8_t {
    kSniff,
    kOpen,
    kTrackMetaData,
    kGetTrack,
    kStart,
    kStop,
    kGetFormat,
    kRead,
    kSeek,
    kReadRun,
    kReadAndKeep,
    kReleaseKept,
    kFreeTrack,
    kFileQueries,
    kPlayerSeek,
    kDrain,
};
inline constexpr size_t kOperations = 16;

struct Call {
    Operation operation = Operation::kSniff;
    /** The low 3 bits choose the track. */
    uint8_t argument = 0;
    uint16_t time = 0;

    size_t track() const { return argument & 7U; }
    /** The rest of the argument. */
    uint8_t detail() const { return argument >> 3; }
};

struct SessionInput {
    static constexpr size_t kMaxFaults = 3;
    static constexpr size_t kMaxCalls = 255;

    /** Whether the file is an elementary stream, to be put on pages first. */
    bool elementary = false;
    /** Whether texts of log lines are composed. */
    bool composedLog = false;
    ReportedSize sizeKind = ReportedSize::kTrue;
    uint16_t sizeValue = 0;
    std::vector<Fault> faults;
    /** Empty for the usual session of a player. */
    std::vector<Call> calls;
    Bytes file;

    SessionInput() = default;
    SessionInput(const uint8_t* data, size_t size);

    Bytes bytes() const;
    /** What `getSize` reports for `size` bytes. */
    int64_t reportedSize(size_t size) const;
};

/** The time that a call's 16 bits stand for, in microseconds. */
int64_t seekTimeUs(uint16_t time, int64_t durationUs);

}  // namespace android::ogm::fuzz
