// SPDX-License-Identifier: Apache-2.0
#include "explain/Finding.h"

#include <fmt/core.h>

namespace ogmprobe {

std::string trackText(const Explanation& explanation, uint32_t serial) {
    const auto track = explanation.trace().trackOf(serial);
    return track ? fmt::format("track {}", *track)
                 : fmt::format("the stream with serial number {}", serial);
}

Finding findingOf(const char* id, uint64_t track, std::optional<uint32_t> serial) {
    Finding finding;
    finding.id = id;
    finding.track = track;
    finding.serial = serial;
    return finding;
}

Finding findingAt(const Explanation& explanation, const char* id, const OggPage& page) {
    Finding finding;
    finding.id = id;
    finding.serial = page.serial;
    finding.track = explanation.trace().trackOf(page.serial);
    finding.offset = page.offset;
    finding.timeUs = explanation.file().timeUs(page);
    return finding;
}

}  // namespace ogmprobe
