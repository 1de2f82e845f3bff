// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "codecs/AudioFrame.h"
#include "ledger/StreamBytes.h"
#include "ledger/StreamPackets.h"
#include "plugin/TrackDescription.h"
#include "records/Fingerprint.h"

namespace ogmprobe {

/** What a track should return in one buffer: a packet's content, or a frame. */
struct FileUnit {
    Fingerprint fingerprint;
    /** With the bytes of other packets that the plug-in appends, if any. */
    std::optional<Fingerprint> withForeignTail;
    /** Indices into the stream's pieces. */
    size_t firstPiece = 0;
    size_t lastPiece = 0;
    /** Of the frame in the elementary stream. */
    uint64_t position = 0;
    /** The packet's length in its header, in granule positions. */
    std::optional<uint64_t> statedLength;
    /** Bytes after the packet's header. */
    uint64_t contentSize = 0;
    /** Of a frame. */
    AudioFrame frame;
    /** The plug-in treats the packet as empty and cannot return it. */
    bool isTooShort = false;
    /** The plug-in's rule for the size of the packet's header differs from the format's. */
    bool hasOddHeader = false;
    bool isComment = false;
    /** Its bytes were never read, or all were dropped. */
    bool isLost = false;
};

/** How the plug-in converts the samples of PCM. */
enum class PcmChange { kNone, kWidenedFrom8, kNarrowedFrom24 };

/** What is needed to count a stream's units. */
struct UnitKind {
    TrackKind kind = TrackKind::kOther;
    /** Of re-framed audio. */
    std::optional<AudioFraming> framing;
    PcmChange pcmChange = PcmChange::kNone;
};

/** Returns all units of the stream without header packets; for frames, also without comments. */
std::vector<FileUnit> unitsOf(const OggFile& file, const StreamPackets& stream,
                              const UnitKind& kind, OggScanner& scanner);

}  // namespace ogmprobe
