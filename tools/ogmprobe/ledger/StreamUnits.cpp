// SPDX-License-Identifier: Apache-2.0
#include "ledger/StreamUnits.h"

#include <algorithm>

#include "codecs/Fields.h"
#include "ledger/FrameWalk.h"
#include "ledger/PacketHeaders.h"

namespace ogmprobe {
namespace {

constexpr std::string_view kComment = "\3vorbis";

/** The plug-in treats an audio packet of this size or less as empty. */
constexpr uint64_t kMaxEmptyPacket = 3;

/** A duration of 0 means unknown. */
std::optional<uint64_t> lengthByFormat(std::span<const uint8_t> packet) {
    const uint64_t header = packet.empty() ? 0 : headerByFormat(packet.front());
    const uint64_t length = header > packet.size() ? 0 : numberAt(packet.first(header), 1, 8);
    return length == 0 ? std::nullopt : std::optional(length);
}

std::vector<uint8_t> widened(std::span<const uint8_t> samples) {
    std::vector<uint8_t> wide;
    for (const uint8_t sample : samples) {
        wide.push_back(0);
        wide.push_back(sample ^ 0x80U);
    }
    return wide;
}

std::vector<uint8_t> narrowed(std::span<const uint8_t> samples) {
    std::vector<uint8_t> narrow;
    for (size_t i = 0; i + 2 < samples.size(); i += 3) {
        narrow.push_back(samples[i + 1]);
        narrow.push_back(samples[i + 2]);
    }
    return narrow;
}

Fingerprint fingerprintOf(std::span<const uint8_t> content, PcmChange change) {
    switch (change) {
        case PcmChange::kWidenedFrom8:
            return Fingerprint(widened(content));
        case PcmChange::kNarrowedFrom24:
            return Fingerprint(narrowed(content));
        case PcmChange::kNone:
            break;
    }
    return Fingerprint(content);
}

/** Makes units from the packets of one stream. */
class UnitCount {
  public:
    UnitCount(const OggFile& file, const StreamPackets& stream, const UnitKind& kind,
              OggScanner& scanner)
        : mFile(file), mStream(stream), mKind(kind), mScanner(scanner) {}

    std::vector<FileUnit> packets() {
        std::vector<FileUnit> units;
        for (const FilePacket& packet : mStream.packets) {
            if (packet.isHeader || packet.isOrphan) {
                continue;
            }
            StreamBytes bytes(mScanner);
            append(bytes, packet, 0);
            units.push_back(unitOf(packet, bytes.at(0, packet.size)));
            if (!packet.foreignTail.empty()) {
                addTail(bytes, packet);
                units.back().withForeignTail =
                        unitOf(packet, bytes.at(0, bytes.size())).fingerprint;
            }
        }
        return units;
    }

    std::vector<FileUnit> frames(AudioFraming framing) {
        StreamBytes bytes(mScanner);
        std::vector<uint64_t> boundaries;
        std::vector<size_t> oddPieces;
        for (const FilePacket& packet : mStream.packets) {
            if (!packet.isHeader && !isComment(packet)) {
                const uint8_t flags = firstByte(packet);
                append(bytes, packet, packet.isOrphan ? 0 : headerByFormat(flags));
                if (!packet.isOrphan && headerByFormat(flags) != headerByPlugin(flags)) {
                    oddPieces.push_back(packet.firstPiece);
                }
                boundaries.push_back(bytes.size());
            }
        }
        std::vector<FileUnit> units;
        for (const WalkedFrame& frame : walkFrames(framing, bytes, boundaries)) {
            FileUnit unit;
            unit.fingerprint = Fingerprint(bytes.at(frame.position, frame.size));
            unit.firstPiece = bytes.pieceAt(frame.position);
            unit.lastPiece = bytes.pieceAt(frame.position + frame.size - 1);
            unit.position = frame.position;
            unit.frame = frame.header;
            const auto odd = std::lower_bound(oddPieces.begin(), oddPieces.end(), unit.firstPiece);
            unit.hasOddHeader = odd != oddPieces.end() && *odd <= unit.lastPiece;
            units.push_back(unit);
        }
        return units;
    }

  private:
    /** Appends the packet's bytes without the first ones. */
    void append(StreamBytes& bytes, const FilePacket& packet, uint64_t skipped) const {
        for (size_t i = packet.firstPiece; i < packet.endPiece; ++i) {
            const OggPiece& piece = mFile.pieces()[mStream.pieces[i]];
            const uint64_t size = std::min<uint64_t>(piece.size, mFile.size() - piece.offset);
            const uint64_t left = std::min(skipped, size);
            bytes.append(i, piece.offset + left, size - left);
            skipped -= left;
        }
    }

    void addTail(StreamBytes& bytes, const FilePacket& packet) const {
        for (const size_t i : packet.foreignTail) {
            const OggPiece& piece = mFile.pieces()[mStream.pieces[i]];
            bytes.append(i, piece.offset,
                         std::min<uint64_t>(piece.size, mFile.size() - piece.offset));
        }
    }

    std::span<const uint8_t> beginning(const FilePacket& packet) const {
        return packet.size == 0
                       ? std::span<const uint8_t>()
                       : mScanner.bytes(mFile.pieces()[mStream.pieces[packet.firstPiece]].offset,
                                        std::min<uint64_t>(packet.size, kComment.size()));
    }

    uint8_t firstByte(const FilePacket& packet) const {
        const auto bytes = beginning(packet);
        return bytes.empty() ? 0 : bytes.front();
    }

    bool isComment(const FilePacket& packet) const {
        return holdsAt(beginning(packet), 0, kComment);
    }

    FileUnit unitOf(const FilePacket& packet, std::span<const uint8_t> bytes) const {
        const bool isAudio = mKind.kind == TrackKind::kAudio;
        const uint8_t flags = bytes.empty() ? 0 : bytes.front();
        const uint64_t header = isAudio ? headerByPlugin(flags) : 1;
        FileUnit unit;
        unit.firstPiece = packet.firstPiece;
        unit.lastPiece = packet.endPiece - 1;
        unit.isComment = holdsAt(bytes, 0, kComment);
        unit.statedLength = lengthByFormat(bytes);
        unit.contentSize = bytes.size() - std::min<uint64_t>(headerByFormat(flags), bytes.size());
        unit.isTooShort = header > bytes.size() || (isAudio && bytes.size() <= kMaxEmptyPacket);
        unit.hasOddHeader = isAudio && !unit.isComment && header != headerByFormat(flags);
        unit.fingerprint = fingerprintOf(bytes.subspan(std::min<uint64_t>(header, bytes.size())),
                                         mKind.pcmChange);
        return unit;
    }

    const OggFile& mFile;
    const StreamPackets& mStream;
    const UnitKind& mKind;
    OggScanner& mScanner;
};

}  // namespace

std::vector<FileUnit> unitsOf(const OggFile& file, const StreamPackets& stream,
                              const UnitKind& kind, OggScanner& scanner) {
    UnitCount count(file, stream, kind, scanner);
    return kind.framing ? count.frames(*kind.framing) : count.packets();
}

}  // namespace ogmprobe
