// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/**
 * Restricts the process that runs the plug-in, in case a file takes control of it. The process may
 * only read the open file, use limited memory, and write to its parent.
 */
namespace ogmprobe {

/** How much memory may be allocated beyond what is mapped when the sandbox is entered. */
constexpr uint64_t kMemoryLimitBytes = uint64_t{1} << 30;

/**
 * Makes the process end with its parent, and closes all descriptors but the given one, which
 * becomes number `kParentDescriptor`. The standard streams are discarded.
 */
void detach(int parentProcess, int descriptor);

constexpr int kParentDescriptor = 3;

/**
 * Cannot be undone: no new privileges, limits on memory and written files, and a filter for system
 * calls that ends the process with SIGSYS. If the kernel has no such filter, as in user-mode
 * emulators, returns the reason; everything else still applies.
 */
std::optional<std::string> enterSandbox();

}  // namespace ogmprobe
