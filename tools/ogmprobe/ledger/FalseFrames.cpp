// SPDX-License-Identifier: Apache-2.0
#include "ledger/FalseFrames.h"

#include <algorithm>

#include "ledger/PacketHeaders.h"
#include "ledger/StreamBytes.h"

namespace ogmprobe {
namespace {

constexpr uint64_t kPartSize = 4096;

/** The bytes of a stream as the plug-in's queue gets them. */
class ArrivedBytes {
  public:
    ArrivedBytes(const OggFile& file, const PluginTrace& trace, const StreamPackets& packets,
                 OggScanner& scanner)
        : mFile(file), mTrace(trace), mPieces(packets.pieces), mScanner(scanner), mBytes(scanner) {
        for (const FilePacket& packet : packets.packets) {
            if (!packet.isHeader) {
                append(packet);
            }
        }
    }

    /** The position of such a buffer, searched from `position` on. */
    std::optional<uint64_t> find(const Fingerprint& buffer, uint64_t position) {
        const uint64_t shown = std::min<uint64_t>(buffer.size, Fingerprint::kBeginning);
        const auto beginning = std::span(buffer.beginning).first(shown);
        while (shown > 0 && position + buffer.size <= mBytes.size()) {
            const auto window = mBytes.at(position, kPartSize + shown);
            const auto found =
                    std::search(window.begin(), window.end(), beginning.begin(), beginning.end());
            if (found == window.end()) {
                position += kPartSize;
                continue;
            }
            position += static_cast<uint64_t>(found - window.begin());
            if (Fingerprint(mBytes.at(position, buffer.size)).isSame(buffer)) {
                return position;
            }
            ++position;
        }
        return std::nullopt;
    }

    uint64_t fileOffset(uint64_t position) const {
        return mFile.pieces()[mBytes.pieceAt(position)].offset;
    }

  private:
    void append(const FilePacket& packet) {
        uint64_t header = packet.isOrphan ? 0 : headerOf(packet);
        for (size_t i = packet.firstPiece; i < packet.endPiece; ++i) {
            const size_t index = mPieces[i];
            const OggPiece& piece = mFile.pieces()[index];
            const uint64_t size = std::min<uint64_t>(piece.size, mFile.size() - piece.offset);
            const uint64_t skipped = std::min(header, size);
            header = 0;
            if (mTrace.wasRead(index) && !isDropped(index)) {
                mBytes.append(index, piece.offset + skipped, size - skipped);
            }
        }
    }

    uint64_t headerOf(const FilePacket& packet) const {
        const auto first = mScanner.bytes(mFile.pieces()[mPieces[packet.firstPiece]].offset, 1);
        return packet.size == 0 || first.empty() ? 0 : headerByPlugin(first.front());
    }

    bool isDropped(size_t piece) const {
        return mTrace.said(PieceEvent::kGranuleFell, piece) ||
               mTrace.said(PieceEvent::kTooShort, piece) || mTrace.said(PieceEvent::kNoSync, piece);
    }

    const OggFile& mFile;
    const PluginTrace& mTrace;
    const std::vector<size_t>& mPieces;
    OggScanner& mScanner;
    StreamBytes mBytes;
};

}  // namespace

FalseFrames falseFramesOf(const OggFile& file, const PluginTrace& trace,
                          const StreamPackets& packets, const Delivery& delivery,
                          const std::vector<Fingerprint>& buffers, OggScanner& scanner) {
    FalseFrames frames;
    if (delivery.foreign.empty()) {
        return frames;
    }
    ArrivedBytes arrived(file, trace, packets, scanner);
    uint64_t position = 0;
    for (const size_t buffer : delivery.foreign) {
        // They are cut in the order of their positions.
        if (const auto found = arrived.find(buffers[buffer], position)) {
            position = *found + buffers[buffer].size;
            ++frames.count;
            frames.offset = frames.offset.value_or(arrived.fileOffset(*found));
        }
    }
    return frames;
}

}  // namespace ogmprobe
