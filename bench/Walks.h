// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Source.h"

/** The benchmarks with which the plug-in is compared. */
namespace android::ogm::bench {

struct WalkResult {
    uint64_t pages = 0;
    uint64_t packets = 0;
    uint64_t payloadBytes = 0;
};

/** Reads the file's packets with libogg, checksums included. */
WalkResult walkWithLibogg(const MappedFile& file);

/** A piece of a packet: bytes on one page. */
struct PayloadPlace {
    size_t offset;
    size_t size;
};

/** Returns the pieces of a file's packets, page by page. */
std::vector<PayloadPlace> payloadPlaces(const MappedFile& file);

/** Copies each piece into one buffer. */
void copyPayload(const MappedFile& file, const std::vector<PayloadPlace>& places);

/** Reads the whole source in blocks of 64 KiB. */
void readSequentially(Source& source);

}  // namespace android::ogm::bench
