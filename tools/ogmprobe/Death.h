// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/**
 * The end of the process when the extractor dies or gets stuck in it: one message, what was
 * collected for standard output, exit code 4.
 */
namespace ogmprobe::death {

/**
 * Catches assertions of the plug-in and of the platform libraries, and fatal signals. What happens
 * outside a `PluginCall` is this program's own fault and ends it in the usual way.
 */
void catchAll();

/** Names the file that messages are about, from now on. */
void nameSubject(const std::string& path);

/** Ends the process; may be called on any thread while the plug-in is at work. */
[[noreturn]] void extractorIsStuck(const char* function, const char* observation) noexcept;

}  // namespace ogmprobe::death
