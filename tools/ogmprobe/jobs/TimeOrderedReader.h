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
     * Returns the next packet, or with a seek the packet that the stream lands on. Returns nothing
     * at the end; then it must not be called again before a seek.
     */
    virtual std::optional<Packet> read(const std::optional<SeekRequest>& seek) = 0;
};

/** A packet with its place among the packets of its stream. */
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
 * Reads several streams side by side, always the one whose time is lowest. So a plug-in that finds
 * packets of all tracks while it reads the file never has to keep many of them.
 *
 * A stream's place is the largest time it has reached, because times within a stream may go back.
 */
class TimeOrderedReader {
  public:
    /** Streams must outlive the reader. The lead is the one that a seek moves first. */
    TimeOrderedReader(const std::vector<PacketStream*>& streams, size_t lead);

    /**
     * Seeks as the players do: the lead to the sync frame closest to the target, then the others to
     * the time of the packet that it returned (the target if it returned none; never below 0).
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
