// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "InputReader.h"
#include "ReferenceCutter.h"

namespace android::ogm::fuzz {

/**
 * Cuts access units out of a stream that arrives in pieces. After each piece the units are compared
 * with those of a second implementation, which also knows where the process would end:
 *
 *     1 byte    size of all pieces, or 0: each piece comes after its size (2 bytes, little-endian)
 *     1 byte    difference between the times of two pieces; negative if the high bit is set
 *     the rest  the stream
 */
void cutAndCompare(test::ReferenceCutter::Codec codec, InputReader input);

}  // namespace android::ogm::fuzz
