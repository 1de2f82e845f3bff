// SPDX-License-Identifier: Apache-2.0
#pragma once

/** How a run ends before its script does. */
namespace android::ogm::fuzz {

/**
 * Thrown where the plug-in would end the process, or search without end, and is meant to
 * (docs/behaviour.md, "The process ends" and "A search does not end").
 *
 * The plug-in's sources are built with exceptions for the fuzz targets, so that everything on the
 * way out is destroyed: the leak check stays meaningful, and the next run starts clean.
 */
struct DemandedEnd {};

/** Ends the process with a message: what must not happen has happened. */
[[noreturn]] void finding(const char* format, ...) __attribute__((format(printf, 1, 2)));

/** Ends the process with `message` unless `condition` holds. */
inline void require(bool condition, const char* message) {
    if (!condition) {
        finding("%s", message);
    }
}

/** Runs `body`; false when it was left by a demanded end. */
template <typename Body>
bool endsByItself(Body&& body) {
    try {
        body();
        return true;
    } catch (const DemandedEnd&) {
        return false;
    }
}

}  // namespace android::ogm::fuzz
