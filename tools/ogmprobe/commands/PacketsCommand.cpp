// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "commands/PacketList.h"

namespace ogmprobe {
namespace {

class PacketsRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    PacketsRecords(const PacketsOptions& options, Session& session, Report& report,
                   PacketList& list)
        : CommandRecords(session, report), mOptions(options), mList(list) {}

    void operator()(const FileOpened& file) { requireTracks(mOptions.tracks, file); }
    void operator()(const PlaybackReady& ready) {
        if (ready.trackCount == 0) {
            report().warning(kNoTracks);
        }
    }
    void operator()(const SeekBegun& seek) {
        mListed.clear();
        mList.seek(seek.targetUs);
    }
    void operator()(const PacketPlayed& played) {
        if (isListed(played) && ++mListed[played.track] <= mOptions.count.value_or(UINT64_MAX)) {
            mList.packet(played);
        }
    }

  private:
    bool isListed(const PacketPlayed& played) const {
        const Packet& packet = played.packet;
        return mOptions.tracks.shows(played.track) &&
               packet.timeUs >= mOptions.fromUs.value_or(INT64_MIN) &&
               (!mOptions.untilUs || packet.timeUs < *mOptions.untilUs) &&
               (packet.isSync || !mOptions.syncOnly);
    }

    const PacketsOptions& mOptions;
    PacketList& mList;
    /** Of each track, since the last seek. */
    std::map<uint64_t, uint64_t> mListed;
};

/** Only listed packets may use up a track's count. */
bool listsAll(const PacketsOptions& options) {
    return !options.fromUs && !options.untilUs && !options.syncOnly;
}

ExitCode listPackets(const std::string& path, const PacketsOptions& options, Session& session,
                     PacketList& list) {
    Report report(session.console, path);
    warnOfOnlyTracks(options.tracks, report);
    PacketsRecords records(options, session, report, list);
    PlayRequest request;
    request.tracks = options.tracks.played;
    request.seeksUs = options.seeksUs;
    if (listsAll(options)) {
        request.count = options.count;
    }
    runReported({path, playJob(std::move(request))}, session, report, records);
    list.end(report);
    return report.worst();
}

std::unique_ptr<PacketList> makeList(const PacketsOptions& options, Output& output) {
    if (options.csv) {
        return makePacketCsv(output, options.clock);
    }
    return options.json ? makePacketJsonLines(output) : makePacketTable(output, options.clock);
}

}  // namespace

ExitCode runPackets(const PacketsOptions& options, Session& session) {
    const auto list = makeList(options, session.output);
    list->begin();
    return forEachFile(
            options.files, session,
            [&](const std::string& path, bool isOneOfMany) {
                if (isOneOfMany || options.csv) {
                    list->file(path);
                }
                return listPackets(path, options, session, *list);
            },
            [&](const std::string& name, const Report& report) {
                if (options.json) {
                    list->file(name);
                    list->end(report);
                }
            });
}

}  // namespace ogmprobe
