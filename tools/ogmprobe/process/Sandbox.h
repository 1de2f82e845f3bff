// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/**
 * What the process that runs the plug-in gives up, so that a file that takes it over gains nothing:
 * everything but reading the file that is open, memory within bounds, and writing to its parent.
 */
namespace ogmprobe {

/** How much memory may be taken beyond what is mapped when the sandbox is entered. */
constexpr uint64_t kMemoryLimitBytes = uint64_t{1} << 30;

/**
 * Ties the process to its parent and closes all descriptors but the given one, which becomes number
 * `kParentDescriptor`. The standard streams lead nowhere.
 */
void detach(int parentProcess, int descriptor);

constexpr int kParentDescriptor = 3;

/**
 * For good: no new privileges, limits on memory and written files, and a filter on system calls
 * that ends the process by SIGSYS. Returns why there is no filter, if the kernel has none:
 * user-mode emulators do not. The rest holds all the same.
 */
std::optional<std::string> enterSandbox();

}  // namespace ogmprobe
