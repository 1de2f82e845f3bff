// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace android::ogm::bench {

/** The option by which this program is asked to be such a child: see readOnce. */
inline constexpr char kReadOption[] = "--read";

/**
 * Bytes that reading a file with `pread`, all tracks in time order, takes at most, above those of
 * a program that has loaded the plug-in and nothing else. Measured in processes of their own.
 */
int64_t peakMemoryOfReading(const std::string& path);

/**
 * Reads a file with `pread`, or nothing for an empty path, and prints the number of buffers and the
 * process's peak in KiB.
 */
void readOnce(const std::string& path);

}  // namespace android::ogm::bench
