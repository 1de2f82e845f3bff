// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace ogmprobe {

/** Thrown when nobody reads standard output any more: the program then ends in silence. */
struct ClosedPipe {};

/**
 * Standard output, the only place for data.
 *
 * Lines collect in a buffer, so that a packet list costs few system calls; on a terminal each write
 * is shown at once. Call `flush` at the end: the destructor writes nothing, because it could not
 * report a failure.
 */
class Output {
  public:
    /** Only one object may exist at a time: `flushAfterDeath` writes out that one. */
    explicit Output(int descriptor);
    ~Output();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /**
     * Throws `ClosedPipe` when the reader is gone, and `ProbeError` with `ExitCode::kFile` on any
     * other failure.
     */
    void write(std::string_view text);
    void flush();

    /** Writes out what was collected; safe in a signal handler. */
    static void flushAfterDeath() noexcept;

  private:
    static constexpr size_t kBufferSize = 65536;

    void writeThrough(std::string_view text) const;

    const int mDescriptor;
    const bool mTerminal;
    std::array<char, kBufferSize> mBuffer;
    size_t mUsed = 0;
};

}  // namespace ogmprobe
