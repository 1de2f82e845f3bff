// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

/** Details of an audio stream besides its rate; empty if unknown. */
struct AudioDetails {
    /** "mono", "stereo", "joint stereo", "3/2.1": front, rear and low-frequency channels. */
    std::string layout;
    /** AC-3: "complete main", "commentary". */
    std::string service;
    /** AC-3: level of speech relative to full scale. */
    std::optional<int32_t> dialogueDb;
    /** The encoder's mark: "LAME3.100". */
    std::string encoder;
};

/** From the first header in the bytes, and the encoder's mark. */
AudioDetails mpegAudioDetails(std::span<const uint8_t> stream);
/** From the first AC-3 or E-AC-3 header in the bytes. */
AudioDetails ac3AudioDetails(std::span<const uint8_t> stream);

/** "joint stereo, encoder LAME3.100"; empty if there is nothing. */
std::string audioDetailsText(const AudioDetails& details);

}  // namespace ogmprobe
