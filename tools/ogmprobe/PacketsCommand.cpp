// SPDX-License-Identifier: Apache-2.0
#include <vector>

#include "Commands.h"
#include "Death.h"
#include "MediaFile.h"
#include "PacketList.h"
#include "Report.h"

namespace ogmprobe {
namespace {

void listBuffers(TimeOrderedReader& reader, const PlayedTracks& tracks,
                 const std::optional<uint64_t>& limit, PacketList& list) {
    const auto& streams = tracks.streams();
    std::vector<uint64_t> counts(streams.size(), 0);
    while (const auto packet = reader.next()) {
        list.packet(streams[packet->stream]->description().index, *packet);
        if (++counts[packet->stream] == limit) {
            reader.drop(packet->stream);
        }
    }
}

void listFile(const PacketsOptions& options, const GlobalOptions& global, Report& report,
              PacketList& list) {
    const PluginLibrary library = loadPlugin(global);
    const MediaFile file(library, options.file);
    const PlayedTracks tracks(file, options.tracks, report);
    if (tracks.streams().empty()) {
        report.warning("the file has no tracks that can be played");
        return;
    }
    TimeOrderedReader reader = tracks.reader();
    if (options.seeksUs.empty()) {
        listBuffers(reader, tracks, options.count, list);
    }
    for (const int64_t targetUs : options.seeksUs) {
        list.seek(targetUs);
        reader.seek(targetUs);
        listBuffers(reader, tracks, options.count, list);
    }
    file.requireReadable();
}

}  // namespace

ExitCode runPackets(const PacketsOptions& options, Session& session) {
    death::nameSubject(options.file);
    Report report(session.console, options.file);
    const auto list =
            options.json ? makePacketJsonLines(session.output) : makePacketTable(session.output);
    list->begin();
    report.guard([&] { listFile(options, session.options, report, *list); });
    list->end(report);
    return report.worst();
}

}  // namespace ogmprobe
