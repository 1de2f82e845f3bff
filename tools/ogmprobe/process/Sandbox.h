// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/**
 * Restricts the process that runs the plug-in, so that a file that takes control of it gains
 * nothing. It may only read the open file, use limited memory, and write to its parent.
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
 * Cannot be undone: no new privileges, limits on memory and written files, and a filter on system
 * calls that ends the process by SIGSYS. Returns why there is no filter if the kernel has none, as
 * under user-mode emulators; the rest applies even then.
 */
std::optional<std::string> enterSandbox();

}  // namespace ogmprobe
