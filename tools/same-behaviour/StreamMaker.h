// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Bytes.h"
#include "Random.h"

namespace android::ogm::trace {

using test::Bytes;

/** A logical stream before it is cut into pages. */
struct Stream {
    uint32_t serialNo = 0;
    Bytes header;
    std::vector<Bytes> packets;
    /** By how much the granule position rises with each packet. */
    uint64_t granuleStep = 1;
};

struct StreamSize {
    size_t packets = 50;
    size_t maxPacket = 2000;
};

/** Return streams of all codecs, known and unknown; some headers have unusual values. */
Stream videoStream(Random* random, uint32_t serialNo, const StreamSize& size);
Stream audioStream(Random* random, uint32_t serialNo, const StreamSize& size);
/** Returns a stream without a track. */
Stream otherStream(Random* random, uint32_t serialNo, const StreamSize& size);

}  // namespace android::ogm::trace
