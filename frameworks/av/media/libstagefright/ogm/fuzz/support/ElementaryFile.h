// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "InputReader.h"

namespace android::ogm::fuzz {

/**
 * Puts an elementary stream on pages, so that mutations of it reach its cutter without having to
 * keep lacing tables right:
 *
 *     1 byte   codec
 *     1 byte   size of the packets, in steps of 8 bytes
 *     1 byte   packets on a page, less 1, in the low 2 bits; granule step of a page above
 *     1 byte   first byte of each packet
 *     the rest the stream
 */
Bytes elementaryFile(const Bytes& input);

}  // namespace android::ogm::fuzz
