// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "ledger/StreamUnits.h"

namespace ogmprobe {

/** What the headers inside an audio stream say about it. */
struct AudioFacts {
    /** "MPEG-1 layer III", "AC-3", "Vorbis". */
    std::string coding;
    uint32_t sampleRate = 0;
    uint32_t channels = 0;
    /** Bits a second; nothing where no header tells. */
    std::optional<double> bitrate;
    /** All frames looked at have the same bitrate; nothing where that is not known. */
    std::optional<bool> constantBitrate;
};

/** Of MPEG audio, AC-3 and DTS, by the headers of the first frames; nothing without one. */
std::optional<AudioFacts> framedAudioFacts(const OggFile& file, StreamPackets stream,
                                           const std::string& formatTag, OggScanner& scanner);

/** Of Vorbis, by its identification header (Vorbis I, section 4.2.2). */
std::optional<AudioFacts> vorbisFacts(std::span<const uint8_t> header);

/** "MPEG-1 layer III, 44100 Hz, 2 channels, 128 kbit/s constant" */
std::string audioFactsText(const AudioFacts& facts);

}  // namespace ogmprobe
