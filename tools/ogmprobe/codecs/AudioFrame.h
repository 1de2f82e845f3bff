// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace ogmprobe {

/** Elementary streams of audio whose frames say themselves where they begin and end. */
enum class AudioFraming { kMpegAudio, kAc3, kDts };

/** What a frame's header says. */
struct AudioFrame {
    enum class Kind { kMpegAudio, kAc3, kEnhancedAc3, kDtsCore, kDtsSubstream };

    Kind kind = Kind::kMpegAudio;
    /** With the header; 0 where the header does not tell. */
    uint64_t size = 0;
    /** 0 where the header does not tell. */
    uint32_t sampleRate = 0;
    uint32_t channels = 0;
    /** For each channel; 0 where the header does not tell. */
    uint32_t samples = 0;
    /** Equal for frames that one decoder can take one after the other. */
    uint32_t family = 0;
    /** It is heard together with the frame before, and takes up no time of its own. */
    bool addsToFrameBefore = false;
    /** MPEG audio: 1 to 3. */
    uint32_t layer = 0;
    /** AC-3: `frmsizecod`. */
    uint32_t frameSizeCode = 0;
    /** DTS: its words have 14 bits, or the least significant byte first. */
    bool fourteenBits = false;
    bool littleEndian = false;
};

/** As many bytes as the header of a frame can take up. */
inline constexpr size_t kAudioHeaderBytes = 16;

/** The frame whose header the bytes begin with; nothing if they begin with none. */
std::optional<AudioFrame> audioFrameAt(AudioFraming framing, std::span<const uint8_t> bytes);

/** ISO/IEC 11172-3 and 13818-3. */
std::optional<AudioFrame> mpegAudioFrameAt(std::span<const uint8_t> bytes);
/** ATSC A/52, E-AC-3 (annex E) included. */
std::optional<AudioFrame> ac3FrameAt(std::span<const uint8_t> bytes);
/** Bytes of an AC-3 frame by its `frmsizecod`; 0 for one that there is not. */
uint64_t ac3FrameSize(uint32_t sampleRate, uint32_t frmsizecod);
/** ETSI TS 102 114: a core in one of its four forms, or an extension substream. */
std::optional<AudioFrame> dtsFrameAt(std::span<const uint8_t> bytes);

}  // namespace ogmprobe
