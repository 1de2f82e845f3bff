// SPDX-License-Identifier: Apache-2.0
#include "compare/PlayedFile.h"

#include <media/NdkMediaFormat.h>

#include "records/Digest.h"
#include "text/LogText.h"

namespace ogmprobe {
namespace {

std::span<const uint8_t> bytesOf(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

/** Returns the entries other than time and sync flag, which are compared separately. */
std::string otherEntries(const Packet& packet) {
    std::string text;
    for (const FormatEntry& entry : packet.entries) {
        if (entry.name != AMEDIAFORMAT_KEY_TIME_US &&
            entry.name != AMEDIAFORMAT_KEY_IS_SYNC_FRAME) {
            text += (text.empty() ? "" : ", ") + entry.name + ": " + entry.value;
        }
    }
    return text;
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
    const auto entries = mFile.entriesTexts.insert(otherEntries(packet)).first;
    mFile.tracks[played.track].packets.push_back(
            {packet.timeUs, packet.isSync, packet.bytes.size(), fnv1a64(packet.bytes), &*entries});
}

void PlayedFileRecords::operator()(const TrackEnded& ended) {
    mFile.tracks[ended.track].failure = ended.failure;
    CommandRecords::operator()(ended);
}

void PlayedFileRecords::operator()(const Failure& failure) {
    mFile.failure = failure;
    CommandRecords::operator()(failure);
}

// Log lines cut a search into several records.
void PlayedFileRecords::operator()(const SourceRead& read) {
    if (!mFile.reads.empty()) {
        SourceRead& last = mFile.reads.back();
        const auto next = static_cast<uint64_t>(last.offset) + last.count;
        if (static_cast<uint64_t>(read.offset) == next && read.size == last.size &&
            read.result == last.result) {
            last.count += read.count;
            return;
        }
    }
    mFile.reads.push_back(read);
}

void PlayedFileRecords::operator()(const LogLine& line) {
    mFile.logDigests.push_back(fnv1a64(bytesOf(logText(line.priority, line.tag, line.text))));
    CommandRecords::operator()(line);
}

}  // namespace ogmprobe
