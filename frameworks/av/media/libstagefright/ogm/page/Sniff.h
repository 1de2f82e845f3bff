// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android {

/**
 * Decides from a file's first bytes whether it is an OGM file: whether its first pages announce an
 * OGM "video" or "audio" stream, or a Theora stream. A file with only Vorbis is left to other
 * extractors. `isVorbisExist`, which the caller clears, is set if a Vorbis header comes first.
 */
bool sniffOgm(const uint8_t* data, uint32_t size, uint8_t* isVorbisExist);

}  // namespace android
