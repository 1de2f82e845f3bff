// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "codecs/AudioFrame.h"
#include "ledger/StreamBytes.h"
#include "ledger/StreamPackets.h"
#include "plugin/TrackDescription.h"
#include "records/Likeness.h"

namespace ogmprobe {

/** What a track should hand out in one buffer: a packet's content, or a frame. */
struct FileUnit {
    Likeness likeness;
    /** With the bytes of other packets that the plug-in adds, where it does. */
    std::optional<Likeness> withForeignTail;
    /** Indices into the stream's pieces. */
    size_t firstPiece = 0;
    size_t lastPiece = 0;
    /** Of the frame in the elementary stream. */
    uint64_t position = 0;
    /** What the packet's header says it lasts, as a number of granule positions. */
    std::optional<uint64_t> statedLength;
    /** Bytes behind the packet's header. */
    uint64_t contentSize = 0;
    /** Of a frame. */
    AudioFrame frame;
    /** The packet has no content by the plug-in's measure, which cannot hand it out. */
    bool isTooShort = false;
    /** The plug-in takes another number of bytes for the packet's header than the format says. */
    bool hasOddHeader = false;
    bool isComment = false;
    /** Its bytes were never read, or dropped as a whole. */
    bool isLost = false;
};

/** What the plug-in makes of the samples of PCM. */
enum class PcmChange { kNone, kWidenedFrom8, kNarrowedFrom24 };

/** What is to be known of a stream to count its units. */
struct UnitKind {
    TrackKind kind = TrackKind::kOther;
    /** Of audio whose frames are cut out of the packets anew. */
    std::optional<AudioFraming> framing;
    PcmChange pcmChange = PcmChange::kNone;
};

/** All units of the stream but its header packets; of frames, those of comments neither. */
std::vector<FileUnit> unitsOf(const OggFile& file, const StreamPackets& stream,
                              const UnitKind& kind, OggScanner& scanner);

}  // namespace ogmprobe
