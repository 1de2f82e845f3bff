// SPDX-License-Identifier: Apache-2.0
#include "ledger/StreamPackets.h"

#include <optional>

namespace ogmprobe {
namespace {

/** Assembles the packets of one stream, page by page. */
class PacketAssembly {
  public:
    void addPage(const OggFile& file, const OggPage& page) {
        const bool follows = !mSequence || page.sequence == *mSequence + 1;
        mSequence = page.sequence;
        for (size_t i = page.firstPiece; i < page.endPiece; ++i) {
            const bool isContinued = i == page.firstPiece && page.continues();
            if (!addPiece(file, i, isContinued, follows)) {
                return;
            }
            if (i == page.firstPiece && page.beginsStream()) {
                mStream.packets.back().isHeader = true;
            }
        }
    }

    StreamPackets take() { return std::move(mStream); }

  private:
    /** Returns false if the file ends within the piece. */
    bool addPiece(const OggFile& file, size_t index, bool isContinued, bool follows) {
        const OggPiece& piece = file.pieces()[index];
        const bool isThere = piece.offset + piece.size <= file.size();
        if (!isThere && piece.offset >= file.size()) {
            return false;
        }
        const bool begins = !isContinued || !mIsOpen;
        if (begins) {
            FilePacket& begun = mStream.packets.emplace_back();
            begun.firstPiece = mStream.pieces.size();
            begun.isOrphan = isContinued;
        }
        FilePacket& packet = mStream.packets.back();
        mStream.pieces.push_back(index);
        packet.endPiece = mStream.pieces.size();
        packet.size += isThere ? piece.size : file.size() - piece.offset;
        mIsSound = isThere && !packet.isOrphan && (begins || (mIsSound && follows));
        packet.isWhole = mIsSound && piece.endsPacket;
        mIsOpen = !piece.endsPacket;
        return true;
    }

    StreamPackets mStream;
    std::optional<uint32_t> mSequence;
    bool mIsOpen = false;
    bool mIsSound = true;
};

}  // namespace

std::map<uint32_t, StreamPackets> packetsOf(const OggFile& file) {
    std::map<uint32_t, PacketAssembly> assemblies;
    for (const OggPage& page : file.pages()) {
        if (page.isReadable() && page.offset + page.headerSize <= file.size()) {
            assemblies[page.serial].addPage(file, page);
        }
    }
    std::map<uint32_t, StreamPackets> streams;
    for (auto& [serial, assembly] : assemblies) {
        streams.emplace(serial, assembly.take());
    }
    return streams;
}

}  // namespace ogmprobe
