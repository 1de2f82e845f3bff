// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "commands/CommandRecords.h"
#include "jobs/PlayLimit.h"
#include "records/Records.h"

namespace ogmprobe {

/** The compared parts of a packet; equal digests mean equal bytes. */
struct ComparedPacket {  // NOLINT(bugprone-exception-escape): comparing texts does not throw.
    int64_t timeUs = 0;
    bool isSync = false;
    uint64_t size = 0;
    uint64_t digest = 0;
    /** The buffer's other entries: one text, shared by all packets with the same entries. */
    const std::string* entries = nullptr;

    bool operator==(const ComparedPacket& other) const {
        return timeUs == other.timeUs && hasSameContent(other);
    }
    bool hasSameContent(const ComparedPacket& other) const {
        return isSync == other.isSync && size == other.size && digest == other.digest &&
               entriesText() == other.entriesText();
    }
    /** An order in which equal packets are adjacent. */
    bool operator<(const ComparedPacket& other) const {
        return std::tie(timeUs, isSync, size, digest, entriesText()) <
               std::tie(other.timeUs, other.isSync, other.size, other.digest, other.entriesText());
    }
    const std::string& entriesText() const {
        static const std::string kNone;
        return entries != nullptr ? *entries : kNone;
    }
};

struct ComparedTrack {
    TrackDescription description;
    std::vector<ComparedPacket> packets;
    /** Why reading ended, unless at the end of the stream. */
    std::optional<std::string> failure;
};

/** What a plug-in returned for a file. */
struct PlayedFile {
    std::optional<FileOpened> opened;
    /** By track index. */
    std::map<uint64_t, ComparedTrack> tracks;
    std::optional<Failure> failure;
    /** Digests of the log lines, in their order. */
    std::vector<uint64_t> logDigests;
    /** Reads of the source in their order, if requested; each search is one element. */
    std::vector<SourceRead> reads;
    /** Only if requested. */
    std::vector<SeekLanded> seeks;
    /** The entries of buffers; packets point into it. */
    std::set<std::string> entriesTexts;

    /** Returns whether the plug-in was called with the file. */
    bool wasTried() const { return opened || (failure && failure->code != ExitCode::kFile); }
};

/** Collects a played file from the records of a job. */
class PlayedFileRecords : public CommandRecords {
  public:
    using CommandRecords::CommandRecords;
    using CommandRecords::operator();

    void operator()(const FileOpened& opened);
    void operator()(const TrackStarted& started);
    /** Throws `EndlessRepetition`. */
    void operator()(const PacketPlayed& played);
    void operator()(const TrackEnded& ended);
    void operator()(const Failure& failure);
    void operator()(const LogLine& line);
    void operator()(const SourceRead& read);
    void operator()(const SeekLanded& seek) { mFile.seeks.push_back(seek); }

    PlayedFile& file() { return mFile; }

  private:
    PlayedFile mFile;
    std::optional<PlayLimit> mLimit;
};

}  // namespace ogmprobe
