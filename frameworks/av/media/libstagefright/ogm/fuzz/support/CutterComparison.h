// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "InputReader.h"
#include "ReferenceCutter.h"

namespace android::ogm::fuzz {

/**
 * Cuts access units out of a stream that arrives in pieces, and compares what comes out, piece by
 * piece, with a second implementation, which also tells where the process would end:
 *
 *     1 byte    size of a piece, or 0: each piece has its size (2 bytes, little-endian) in front
 *     1 byte    time of a piece: its number, or with the high bit set one that is negative
 *     the rest  the stream
 */
void cutAndCompare(test::ReferenceCutter::Codec codec, InputReader input);

}  // namespace android::ogm::fuzz
