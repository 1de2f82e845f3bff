// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"

/** Frame headers of MPEG audio: ISO/IEC 11172-3, 13818-3 and its extension to low sampling rates.
 */
namespace android::ogm {

/** The layer field of an MPEG audio frame header: 3 to 1 for layers I to III, 0 is reserved. */
constexpr uint32_t mpegAudioLayerBits(uint32_t header) {
    return header >> 17 & 3;
}

/** Layer I, II or III as 1, 2 or 3. */
constexpr int32_t mpegAudioLayer(uint32_t layerBits) {
    return 4 - static_cast<int32_t>(layerBits);
}

inline constexpr uint32_t kMP3HeaderFound = 0;
inline constexpr uint32_t kMP3HeaderNotFound = 0x80000000;

/**
 * Whether a frame may begin here: sync, version, layer, bitrate and sampling rate are valid.
 * GetMPEGAudioFrameSize is stricter: it refuses the free format too. False for less than 3 bytes.
 */
bool IsPlausibleMPEGAudioSync(ByteView data);

/**
 * Decodes a frame header, a big-endian number. Sizes are in bytes, `sampleRate` in Hz, `bitrate` in
 * kbit/s; all pointers except `frameSize` may be null. Returns false if a field is reserved or the
 * format is free; then `samplesPerFrame` is 1152 and all other outputs are 0.
 */
bool GetMPEGAudioFrameSize(uint32_t header, uint64_t* frameSize, int32_t* sampleRate = nullptr,
                           int32_t* channels = nullptr, int32_t* bitrate = nullptr,
                           int32_t* samplesPerFrame = nullptr);

/**
 * Position of the first header in `length` bytes that has the sync, version, layer and sampling
 * rate of `reference`; -1 if there is none. A header needs 4 bytes.
 */
int32_t FindMatchingMPEGAudioHeader(ByteView data, int32_t length, uint32_t reference);

/**
 * Searches from `offset` on for a header that another one, a frame later, confirms. Returns
 * kMP3HeaderNotFound; or kMP3HeaderFound, with the header, and with `offset` at the header that
 * confirmed it.
 */
uint32_t findMP3Header(ByteView data, uint64_t* offset, uint32_t* header);

}  // namespace android::ogm
