// SPDX-License-Identifier: Apache-2.0
#include "compare/PlayedFile.h"

#include "records/Digest.h"
#include "text/LogText.h"

namespace ogmprobe {
namespace {

std::span<const uint8_t> bytesOf(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

}  // namespace

void PlayedFileRecords::operator()(const FileOpened& opened) {
    mFile.opened = opened;
    mLimit.emplace(opened.sizeBytes);
}

void PlayedFileRecords::operator()(const TrackStarted& started) {
    mFile.tracks[started.track.index].description = started.track;
}

void PlayedFileRecords::operator()(const PacketPlayed& played) {
    if (mLimit) {
        mLimit->add(played.packet);
    }
    const Packet& packet = played.packet;
    mFile.tracks[played.track].packets.push_back(
            {packet.timeUs, packet.isSync, packet.bytes.size(), fnv1a64(packet.bytes)});
}

void PlayedFileRecords::operator()(const TrackEnded& ended) {
    mFile.tracks[ended.track].failure = ended.failure;
    CommandRecords::operator()(ended);
}

void PlayedFileRecords::operator()(const Failure& failure) {
    mFile.failure = failure;
    CommandRecords::operator()(failure);
}

void PlayedFileRecords::operator()(const LogLine& line) {
    mFile.logDigests.push_back(fnv1a64(bytesOf(logText(line.priority, line.tag, line.text))));
    CommandRecords::operator()(line);
}

}  // namespace ogmprobe
