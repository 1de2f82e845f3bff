// SPDX-License-Identifier: Apache-2.0
#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "commands/PacketList.h"

namespace ogmprobe {
namespace {

class PacketsRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    PacketsRecords(Session& session, Report& report, PacketList& list)
        : CommandRecords(session, report), mList(list) {}

    void operator()(const PlaybackReady& ready) {
        if (ready.trackCount == 0) {
            report().warning(kNoTracks);
        }
    }
    void operator()(const SeekBegun& seek) { mList.seek(seek.targetUs); }
    void operator()(const PacketPlayed& packet) { mList.packet(packet); }

  private:
    PacketList& mList;
};

}  // namespace

ExitCode runPackets(const PacketsOptions& options, Session& session) {
    Report report(session.console, options.file);
    const auto list =
            options.json ? makePacketJsonLines(session.output) : makePacketTable(session.output);
    list->begin();
    PacketsRecords records(session, report, *list);
    const Job job = playJob({options.tracks, options.seeksUs, options.count});
    runReported({options.file, job}, session, report, records);
    list->end(report);
    return report.worst();
}

}  // namespace ogmprobe
