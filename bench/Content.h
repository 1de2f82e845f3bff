// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Bytes.h"

/** The files that are measured: the same bytes on every machine and in every run. */
namespace android::ogm::bench {

/** A stream of a file. A few packets repeat, for a file of any length. */
struct ContentStream {
    uint32_t serialNo;
    test::Bytes header;
    /** Packets as they are in the file, one after the other. */
    std::vector<test::Bytes> packets;
    double packetUs;
    uint64_t unitsPerPacket;
};

struct Content {
    std::string name;
    std::vector<ContentStream> streams;
};

/** MPEG-4 video at 25 frames a second with MP3; the same with AC-3; H.264 with PCM. */
Content mpeg4AndMp3();
Content mpeg4AndAc3();
Content h264AndPcm();

/** Receives a piece of the file. */
using Sink = std::function<void(const uint8_t* data, size_t size)>;

/**
 * Writes the pages of the content, with streams interleaved by time, until at least `size` bytes
 * are written and each stream is at the end of a page.
 */
void writePages(const Content& content, size_t size, const Sink& sink);

}  // namespace android::ogm::bench
