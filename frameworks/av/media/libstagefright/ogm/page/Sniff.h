// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android {

/**
 * Decides by a file's first bytes whether it is an OGM file: one whose first pages announce an OGM
 * "video" or "audio" stream or a Theora stream. Vorbis alone is left to other extractors;
 * `isVorbisExist`, which the caller clears, is set when a Vorbis header is met on the way.
 */
bool sniffOgm(const uint8_t* data, uint32_t size, uint8_t* isVorbisExist);

}  // namespace android
