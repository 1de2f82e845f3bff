// SPDX-License-Identifier: Apache-2.0
#include "ledger/LedgerBuild.h"

#include <algorithm>
#include <array>

#include "explain/LogTexts.h"
#include "explain/StreamTypes.h"
#include "ledger/LossSearch.h"

namespace ogmprobe {
namespace {

struct FramedType {
    int64_t type;
    AudioFraming framing;
};

/** The plug-in re-frames these. */
constexpr std::array<FramedType, 4> kFramedTypes = {{
        {stream_type::kMp3, AudioFraming::kMpegAudio},
        {stream_type::kMpegAudio, AudioFraming::kMpegAudio},
        {stream_type::kAc3, AudioFraming::kAc3},
        {stream_type::kDts, AudioFraming::kDts},
}};

constexpr uint16_t kWidenedBits = 8;
constexpr uint16_t kNarrowedBits = 24;

PcmChange pcmChangeOf(uint16_t bits) {
    return bits == kWidenedBits    ? PcmChange::kWidenedFrom8
           : bits == kNarrowedBits ? PcmChange::kNarrowedFrom24
                                   : PcmChange::kNone;
}

UnitKind kindOfTrack(const OggFile& file, const PluginTrace& trace, const PlayedTrack& track) {
    UnitKind kind;
    // If a serial number is announced twice, the first announcement gives the format.
    const int64_t type = track.streamType.value_or(0);
    kind.kind = !track.streamType                  ? track.description.kind
                : type >= stream_type::kFirstVideo ? TrackKind::kVideo
                                                   : TrackKind::kAudio;
    const auto* framed = std::find_if(kFramedTypes.begin(), kFramedTypes.end(),
                                      [type](const FramedType& row) { return row.type == type; });
    if (framed != kFramedTypes.end()) {
        kind.framing = framed->framing;
    }
    if (type == stream_type::kPcm) {
        kind.pcmChange = pcmChangeOf(bitsPerSampleTaken(file, trace));
    }
    return kind;
}

void addLoss(const OggFile& file, const FileUnit& unit, LossReason reason, StreamAccount& account) {
    auto& losses = account.ledger.losses;
    auto loss = std::find_if(losses.begin(), losses.end(),
                             [reason](const Loss& entry) { return entry.reason == reason; });
    const OggPiece& piece = file.pieces()[account.packets.pieces[unit.firstPiece]];
    const auto timeUs = file.timeUs(file.pages()[piece.page]);
    if (loss == losses.end()) {
        losses.push_back({reason, 0, piece.offset, piece.offset, timeUs, timeUs});
        loss = losses.end() - 1;
    }
    ++loss->count;
    loss->lastOffset = piece.offset;
    loss->lastTimeUs = timeUs;
}

void settle(const OggFile& file, const PluginTrace& trace, StreamAccount& account) {
    Ledger& ledger = account.ledger;
    ledger.inFile = account.units.size();
    ledger.repeated = account.delivery.repeated.size();
    ledger.foreign = account.delivery.foreign.size();
    const LossSearch search(file, trace, account);
    for (size_t i = 0; i < account.units.size(); ++i) {
        const Delivery::Unit& unit = account.delivery.units[i];
        if (!unit.buffer) {
            addLoss(file, account.units[i], search.reasonOf(i), account);
            continue;
        }
        ++ledger.returned;
        ledger.changed += unit.isChanged ? 1 : 0;
    }
}

/** A header page after the first data page is also read as a data page. */
void countHeadersRead(const PluginTrace& trace, StreamPackets& stream) {
    for (FilePacket& packet : stream.packets) {
        if (packet.isHeader && trace.wasRead(stream.pieces[packet.firstPiece])) {
            packet.isHeader = false;
        }
    }
}

/**
 * A piece that continues a packet is added to the open packet, even if it belongs to another one
 * whose beginning was dropped or is not in the file.
 */
void findForeignTails(const PluginTrace& trace, StreamPackets& stream) {
    FilePacket* open = nullptr;
    for (FilePacket& packet : stream.packets) {
        const size_t first = stream.pieces[packet.firstPiece];
        const bool isDropped = packet.isOrphan || trace.said(PieceEvent::kGranuleFell, first);
        if (!packet.isHeader && !isDropped && trace.wasRead(first)) {
            open = &packet;
            continue;
        }
        for (size_t i = packet.firstPiece + (packet.isOrphan ? 0 : 1); i < packet.endPiece; ++i) {
            if (isDropped && open != nullptr && trace.wasRead(stream.pieces[i])) {
                open->foreignTail.push_back(i);
            }
        }
    }
}

void markLost(const PluginTrace& trace, StreamAccount& account) {
    for (FileUnit& unit : account.units) {
        const size_t first = account.packets.pieces[unit.firstPiece];
        unit.isLost = !trace.wasRead(first) ||
                      (!account.kind.framing && trace.said(PieceEvent::kGranuleFell, first));
    }
}

std::vector<Fingerprint> fingerprintsOf(const PlayedTrack& track) {
    std::vector<Fingerprint> all;
    all.reserve(track.buffers.size());
    for (const PlayedBuffer& buffer : track.buffers) {
        all.push_back(buffer.fingerprint);
    }
    return all;
}

}  // namespace

uint16_t bitsPerSampleTaken(const OggFile& file, const PluginTrace& trace) {
    uint16_t bits = 0;
    for (const LoggedLine& line : trace.lines()) {
        const auto page = line.offset ? file.pageAt(*line.offset) : std::nullopt;
        if (page && line.function == PluginFunction::kCreate &&
            line.text.starts_with(log_text::kStreamAccepted) && file.pages()[*page].announced) {
            bits = file.pages()[*page].announced->bitsPerSample;
        }
    }
    return bits;
}

std::map<uint32_t, StreamAccount> accountsOf(const std::string& path, const OggFile& file,
                                             const PluginTrace& trace) {
    std::map<uint32_t, StreamAccount> accounts;
    OggScanner scanner(path);
    for (auto& [serial, packets] : packetsOf(file)) {
        StreamAccount& account = accounts[serial];
        account.ledger.serial = serial;
        account.ledger.track = trace.trackOf(serial);
        account.packets = std::move(packets);
        countHeadersRead(trace, account.packets);
        std::vector<Fingerprint> buffers;
        if (account.ledger.track) {
            const PlayedTrack& track = trace.tracks().at(*account.ledger.track);
            account.kind = kindOfTrack(file, trace, track);
            buffers = fingerprintsOf(track);
        }
        account.ledger.countsFrames = account.kind.framing.has_value();
        if (!account.kind.framing) {
            findForeignTails(trace, account.packets);
        }
        account.units = unitsOf(file, account.packets, account.kind, scanner);
        markLost(trace, account);
        account.delivery = deliveryOf(account.units, buffers);
        if (account.kind.framing) {
            account.falseFrames =
                    falseFramesOf(file, trace, account.packets, account.delivery, buffers, scanner);
        }
        settle(file, trace, account);
    }
    return accounts;
}

}  // namespace ogmprobe
