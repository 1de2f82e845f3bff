// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "commands/CommandRecords.h"
#include "jobs/PlayLimit.h"
#include "records/Records.h"

namespace ogmprobe {

/** What is compared of a packet; equal digests stand for equal bytes. */
struct ComparedPacket {
    int64_t timeUs = 0;
    bool isSync = false;
    uint64_t size = 0;
    uint64_t digest = 0;

    bool operator==(const ComparedPacket&) const = default;
    /** Puts equal packets side by side, nothing more. */
    bool operator<(const ComparedPacket& other) const {
        return std::tie(timeUs, isSync, size, digest) <
               std::tie(other.timeUs, other.isSync, other.size, other.digest);
    }
};

struct ComparedTrack {
    TrackDescription description;
    std::vector<ComparedPacket> packets;
    /** Why reading ended, unless at the end of the stream. */
    std::optional<std::string> failure;
};

/** What one plug-in gave of one file. */
struct PlayedFile {
    std::optional<FileOpened> opened;
    /** By their indices. */
    std::map<uint64_t, ComparedTrack> tracks;
    std::optional<Failure> failure;
    /** Of the log lines, in their order. */
    std::vector<uint64_t> logDigests;

    /** Whether the plug-in came to see the file at all. */
    bool wasTried() const { return opened || (failure && failure->code != ExitCode::kFile); }
};

/** Gathers a played file from the records of a job. */
class PlayedFileRecords : public CommandRecords {
  public:
    using CommandRecords::CommandRecords;
    using CommandRecords::operator();

    void operator()(const FileOpened& opened);
    void operator()(const TrackStarted& started);
    /** Throws `GoesInCircles`. */
    void operator()(const PacketPlayed& played);
    void operator()(const TrackEnded& ended);
    void operator()(const Failure& failure);
    void operator()(const LogLine& line);

    PlayedFile& file() { return mFile; }

  private:
    PlayedFile mFile;
    std::optional<PlayLimit> mLimit;
};

}  // namespace ogmprobe
