// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "explain/OggScanner.h"
#include "explain/PluginTrace.h"
#include "ledger/Delivery.h"
#include "ledger/StreamPackets.h"

namespace ogmprobe {

/** Buffers that are not frames of the file, but were cut out of the bytes of its packets. */
struct FalseFrames {
    uint64_t count = 0;
    /** Where in the file the first of them begins. */
    std::optional<uint64_t> offset;
};

/**
 * Searches for the foreign buffers of a stream of frames in the stream's bytes that arrived. Throws
 * `ProbeError`.
 */
FalseFrames falseFramesOf(const OggFile& file, const PluginTrace& trace,
                          const StreamPackets& packets, const Delivery& delivery,
                          const std::vector<Fingerprint>& buffers, OggScanner& scanner);

}  // namespace ogmprobe
