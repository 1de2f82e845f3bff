// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "plugin/Track.h"
#include "records/Packet.h"

namespace ogmprobe {

/** A source of packets: a track, or a test's script. */
class PacketStream {
  public:
    virtual ~PacketStream() = default;

    /**
     * Returns the next packet; with a seek, the packet on which the stream lands. Returns nothing
     * at the end; it must not be called again then, except with a seek.
     */
    virtual std::optional<Packet> read(const std::optional<SeekRequest>& seek) = 0;
};

/** A packet and its position in its stream. */
struct OrderedPacket {
    /** Index of the stream in the reader's list. */
    size_t stream = 0;
    Packet packet;
    /**
     * Time of the stream's next packet minus this one's; negative where pictures are stored in
     * another order than they are shown. Nothing for a stream's last packet.
     */
    std::optional<int64_t> untilNextUs;
};

/**
 * Reads several streams together, always the one with the lowest time. So a plug-in that finds
 * packets of all tracks while it reads the file never has to queue many of them.
 *
 * The time of a stream is the largest one that it has reached, because times may step back.
 */
class TimeOrderedReader {
  public:
    /** Streams must outlive the reader. The lead is the stream that a seek moves first. */
    TimeOrderedReader(const std::vector<PacketStream*>& streams, size_t lead);

    /**
     * Seeks like players: the lead to the sync frame closest to the target, then the others to the
     * time of the packet that the lead returned (to the target if there was none; never below 0).
     */
    void seek(int64_t targetUs);

    /** Returns the stream's next packet, null at its end. Valid until the next call. */
    const Packet* pending(size_t stream) const;

    /** Returns the next packet of all streams; nothing when all have ended. */
    std::optional<OrderedPacket> next();

    /** Reads no more of the stream until the next seek. */
    void drop(size_t stream);

  private:
    struct Lane {
        PacketStream* source;
        std::optional<Packet> pending;
        int64_t reachedUs = 0;
    };

    void readFirstPackets();
    void land(Lane& lane, const SeekRequest& seek);
    Lane* leastAdvanced();

    std::vector<Lane> mLanes;
    const size_t mLead;
    bool mStarted = false;
};

}  // namespace ogmprobe
