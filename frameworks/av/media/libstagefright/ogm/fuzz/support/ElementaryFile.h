// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "InputReader.h"

namespace android::ogm::fuzz {

/**
 * Puts an elementary stream on pages. Mutations of the stream then reach its cutter, because the
 * lacing tables stay right:
 *
 *     1 byte   codec
 *     1 byte   size of the packets, in steps of 8 bytes
 *     1 byte   low 2 bits: packets on a page, less 1; upper bits: granule step of a page
 *     1 byte   first byte of each packet
 *     the rest the stream
 */
Bytes elementaryFile(const Bytes& input);

}  // namespace android::ogm::fuzz
