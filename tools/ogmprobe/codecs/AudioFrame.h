// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace ogmprobe {

/** Elementary streams of audio whose frames mark where they begin and end. */
enum class AudioFraming { kMpegAudio, kAc3, kDts };

/** The contents of a frame's header. */
struct AudioFrame {
    enum class Kind { kMpegAudio, kAc3, kEnhancedAc3, kDtsCore, kDtsSubstream };

    Kind kind = Kind::kMpegAudio;
    /** Including the header; 0 if the header does not say. */
    uint64_t size = 0;
    /** 0 if the header does not say. */
    uint32_t sampleRate = 0;
    uint32_t channels = 0;
    /** Per channel; 0 if the header does not say. */
    uint32_t samples = 0;
    /** Equal for frames that a decoder can decode one after the other. */
    uint32_t family = 0;
    /** It is played together with the frame before and adds no time. */
    bool addsToFrameBefore = false;
    /** MPEG audio: 1 to 3. */
    uint32_t layer = 0;
    /** AC-3: `frmsizecod`. */
    uint32_t frameSizeCode = 0;
    /** DTS: its words have 14 bits, or the least significant byte first. */
    bool fourteenBits = false;
    bool littleEndian = false;
};

/** The largest size of a frame's header. */
inline constexpr size_t kAudioHeaderBytes = 16;

/** Returns the frame whose header is at the beginning of the bytes; nothing if there is none. */
std::optional<AudioFrame> audioFrameAt(AudioFraming framing, std::span<const uint8_t> bytes);

/** ISO/IEC 11172-3 and 13818-3. */
std::optional<AudioFrame> mpegAudioFrameAt(std::span<const uint8_t> bytes);
/** ATSC A/52, with E-AC-3 (annex E). */
std::optional<AudioFrame> ac3FrameAt(std::span<const uint8_t> bytes);
/** Returns the bytes of an AC-3 frame by its `frmsizecod`; 0 for an invalid one. */
uint64_t ac3FrameSize(uint32_t sampleRate, uint32_t frmsizecod);
/** ETSI TS 102 114: a core in one of its four forms, or an extension substream. */
std::optional<AudioFrame> dtsFrameAt(std::span<const uint8_t> bytes);

}  // namespace ogmprobe
