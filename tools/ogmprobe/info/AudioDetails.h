// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

/** What a listener or an engineer asks about sound beyond its rate; empty if unknown. */
struct AudioDetails {
    /** "mono", "stereo", "joint stereo", "3/2.1": channels in front, behind, and the low one. */
    std::string layout;
    /** AC-3: "complete main", "commentary". */
    std::string service;
    /** AC-3: level of speech against the largest. */
    std::optional<int32_t> dialogueDb;
    /** What the encoder says of itself: "LAME3.100". */
    std::string encoder;
};

/** By the first header in the bytes, and the encoder's mark. */
AudioDetails mpegAudioDetails(std::span<const uint8_t> stream);
/** By the first header in the bytes, of AC-3 or E-AC-3. */
AudioDetails ac3AudioDetails(std::span<const uint8_t> stream);

/** "joint stereo, encoder LAME3.100"; empty if there is nothing. */
std::string audioDetailsText(const AudioDetails& details);

}  // namespace ogmprobe
