// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace android::ogm::bench {

/** The option that makes this program call readOnce. */
inline constexpr char kReadOption[] = "--read";

/**
 * Returns the peak memory, in bytes, of reading a file with `pread`, all tracks in time order,
 * above that of a program that only loads the plug-in. Measured in separate processes.
 */
int64_t peakMemoryOfReading(const std::string& path);

/**
 * Reads a file with `pread`, or nothing for an empty path. Prints the number of buffers and the
 * process's peak memory in KiB.
 */
void readOnce(const std::string& path);

}  // namespace android::ogm::bench
