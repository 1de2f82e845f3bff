// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "ledger/StreamUnits.h"

namespace ogmprobe {

/** Returns the framing of an audio stream with this format tag; nothing if it has no frames. */
std::optional<AudioFraming> framingOf(const std::string& formatTag);

/** The contents of the headers inside an audio stream. */
struct AudioFacts {
    /** "MPEG-1 layer III", "AC-3", "Vorbis". */
    std::string coding;
    uint32_t sampleRate = 0;
    uint32_t channels = 0;
    /** Bits per second; nothing if no header has it. */
    std::optional<double> bitrate;
    /** Whether all examined frames have the same bitrate; nothing if unknown. */
    std::optional<bool> constantBitrate;
};

/** Reads MPEG audio, AC-3 and DTS: the headers of the first frames; returns nothing without one. */
std::optional<AudioFacts> framedAudioFacts(const OggFile& file, StreamPackets stream,
                                           const std::string& formatTag, OggScanner& scanner);

/** Reads Vorbis: its identification header (Vorbis I, section 4.2.2). */
std::optional<AudioFacts> vorbisFacts(std::span<const uint8_t> header);

/** "MPEG-1 layer III, 44100 Hz, 2 channels, 128 kbit/s constant" */
std::string audioFactsText(const AudioFacts& facts);

}  // namespace ogmprobe
