// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <tuple>
#include <type_traits>

#include "records/Records.h"

/**
 * The fields of each record in the order in which they are passed between processes, for reading
 * and for writing.
 */
namespace ogmprobe {

template <typename T, typename Record>
concept Is = std::same_as<std::remove_const_t<T>, Record>;

template <Is<FormatEntry> T>
auto fieldsOf(T& entry) {
    return std::tie(entry.name, entry.value);
}

// Kind and codec are not passed: they follow from the rest, and they name files.
template <Is<TrackDescription> T>
auto fieldsOf(T& track) {
    return std::tie(track.index, track.mime, track.durationUs, track.width, track.height,
                    track.frameRate, track.sampleRate, track.channelCount, track.mpegAudioLayer,
                    track.esds, track.entries);
}

template <Is<Packet> T>
auto fieldsOf(T& packet) {
    return std::tie(packet.timeUs, packet.isSync, packet.bytes, packet.readUpTo, packet.entries);
}

template <Is<Landing> T>
auto fieldsOf(T& landing) {
    return std::tie(landing.track, landing.timeUs, landing.isSync);
}

template <Is<FileOpened> T>
auto fieldsOf(T& record) {
    return std::tie(record.extractor, record.mime, record.durationUs, record.trackCount,
                    record.sizeBytes, record.entries);
}

template <Is<TrackListed> T>
auto fieldsOf(T& record) {
    return std::tie(record.track);
}

template <Is<TrackStarted> T>
auto fieldsOf(T& record) {
    return std::tie(record.track);
}

template <Is<PlaybackReady> T>
auto fieldsOf(T& record) {
    return std::tie(record.trackCount);
}

template <Is<SeekBegun> T>
auto fieldsOf(T& record) {
    return std::tie(record.targetUs);
}

template <Is<PacketPlayed> T>
auto fieldsOf(T& record) {
    return std::tie(record.track, record.packet, record.untilNextUs);
}

template <Is<TrackEnded> T>
auto fieldsOf(T& record) {
    return std::tie(record.track, record.failure);
}

template <Is<SeekRange> T>
auto fieldsOf(T& record) {
    return std::tie(record.durationKnown, record.lastTargetUs);
}

template <Is<SeekLanded> T>
auto fieldsOf(T& record) {
    return std::tie(record.targetUs, record.landings, record.reads, record.bytes);
}

template <Is<Progress> T>
auto fieldsOf(T& record) {
    return std::tie(record.readUpTo);
}

template <Is<Failure> T>
auto fieldsOf(T& record) {
    return std::tie(record.code, record.message, record.ofPlugin);
}

template <Is<LogLine> T>
auto fieldsOf(T& record) {
    return std::tie(record.priority, record.tag, record.text);
}

template <Is<Unconfined> T>
auto fieldsOf(T& record) {
    return std::tie(record.reason);
}

template <Is<CallBegun> T>
auto fieldsOf(T& record) {
    return std::tie(record.function, record.track);
}

template <Is<CallEnded> T>
auto fieldsOf(T& record) {
    return std::tie(record.function, record.track, record.status);
}

template <Is<BufferRead> T>
auto fieldsOf(T& record) {
    return std::tie(record.track, record.timeUs, record.isSync, record.size);
}

template <Is<SourceRead> T>
auto fieldsOf(T& record) {
    return std::tie(record.offset, record.size, record.result, record.count);
}

}  // namespace ogmprobe
