// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Bytes.h"

namespace android::ogm::test {

/** A frame that a cutter returned. */
struct AccessUnit {
    Bytes bytes;
    std::optional<int64_t> timeUs;

    bool operator==(const AccessUnit& other) const {
        return bytes == other.bytes && timeUs == other.timeUs;
    }
};

inline std::ostream& operator<<(std::ostream& stream, const AccessUnit& unit) {
    stream << unit.bytes.size() << " bytes (" << digestOf(unit.bytes) << ") at ";
    return unit.timeUs ? stream << *unit.timeUs : stream << "no time";
}

/** Frames as size and digest, so that differences are readable. */
inline std::vector<std::string> framesOf(const std::vector<Bytes>& frames) {
    std::vector<std::string> all;
    all.reserve(frames.size());
    for (const Bytes& frame : frames) {
        all.push_back(std::to_string(frame.size()) + " bytes " + digestOf(frame));
    }
    return all;
}

inline std::vector<std::string> framesOf(const std::vector<AccessUnit>& units) {
    std::vector<Bytes> all;
    all.reserve(units.size());
    for (const AccessUnit& unit : units) {
        all.push_back(unit.bytes);
    }
    return framesOf(all);
}

inline std::vector<std::optional<int64_t>> timesOfUnits(const std::vector<AccessUnit>& units) {
    std::vector<std::optional<int64_t>> all;
    all.reserve(units.size());
    for (const AccessUnit& unit : units) {
        all.push_back(unit.timeUs);
    }
    return all;
}

}  // namespace android::ogm::test
