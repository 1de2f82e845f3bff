// SPDX-License-Identifier: Apache-2.0
#pragma once

/** How a run can end before its script. */
namespace android::ogm::fuzz {

/**
 * Thrown where the plug-in would end the process or search without end, if that is intended
 * (docs/behaviour.md, "The process ends" and "A search does not end").
 *
 * The plug-in's sources are built with exceptions for the fuzz targets. Unwinding destroys all
 * objects, so the leak check stays valid and the next run starts clean.
 */
struct IntendedEnd {};

/** Reports a finding: ends the process with a message. */
[[noreturn]] void finding(const char* format, ...) __attribute__((format(printf, 1, 2)));

/** Ends the process with `message` unless `condition` holds. */
inline void require(bool condition, const char* message) {
    if (!condition) {
        finding("%s", message);
    }
}

/** Runs `body`; false if a IntendedEnd left it. */
template <typename Body>
bool endsByItself(Body&& body) {
    try {
        body();
        return true;
    } catch (const IntendedEnd&) {
        return false;
    }
}

}  // namespace android::ogm::fuzz
