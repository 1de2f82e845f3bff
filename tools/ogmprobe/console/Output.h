// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace ogmprobe {

/**
 * Standard output cannot be written: its reader is gone or its disk is full. This is not a failure
 * of a file; the program ends.
 */
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** The reader of standard output is gone, which needs no message. */
class OutputClosed : public OutputError {
  public:
    using OutputError::OutputError;
};

/**
 * Standard output, the only place for data.
 *
 * Lines are buffered, so that a packet list needs few system calls; on a terminal each write is
 * shown at once. Call `flush` at the end: the destructor writes nothing, because it could not
 * report a failure.
 */
class Output {
  public:
    explicit Output(int descriptor);

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /** Both throw `OutputError`. */
    void write(std::string_view text);
    void flush();

  private:
    static constexpr size_t kBufferSize = 65536;

    void writeThrough(std::string_view text) const;

    const int mDescriptor;
    const bool mTerminal;
    std::array<char, kBufferSize> mBuffer;
    size_t mUsed = 0;
};

}  // namespace ogmprobe
