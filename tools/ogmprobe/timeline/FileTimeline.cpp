// SPDX-License-Identifier: Apache-2.0
#include "FileTimeline.h"

#include <fmt/chrono.h>
#include <fmt/core.h>

#include <ctime>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "Chart.h"
#include "Drawing.h"
#include "Evidence.h"
#include "Page.h"
#include "commands/CommandRecords.h"
#include "explain/Finding.h"
#include "explain/OggScanner.h"
#include "explain/TracedPlay.h"
#include "files/NewFile.h"
#include "records/Digest.h"

namespace ogmprobe::timeline {
namespace {

namespace fs = std::filesystem;

/** Collects a file's packets while it is played from its beginning. */
class PlayRecords {
  public:
    explicit PlayRecords(Timeline& shown) : mShown(shown) {}

    template <typename T>
    void operator()(const T&) {}

    void operator()(const FileOpened& file) {
        mShown.file = file;
        mIsOpen = true;
    }
    void operator()(const TrackStarted& started) {
        mLaneOf[started.track.index] = mShown.lanes.size();
        mShown.lanes.push_back({started.track, {}});
    }
    void operator()(const PlaybackReady&) { mIsReady = true; }
    void operator()(const SourceRead& read) {
        (mIsReady ? mShown.playing : mShown.opening).add(read);
    }
    void operator()(const PacketPlayed& played) {
        Lane& lane = mShown.lanes.at(mLaneOf.at(played.track));
        const Packet& packet = played.packet;
        lane.packets.push_back({packet.timeUs,
                                packet.bytes.size(),
                                packet.readUpTo,
                                packet.isSync,
                                frameTypeOf(lane.track.mime, packet.bytes),
                                fnv1a64(packet.bytes),
                                {}});
    }
    void operator()(const TrackEnded& end) {
        if (end.failure) {
            mFailedTracks.insert(end.track);
        }
    }

    bool isOpen() const { return mIsOpen; }
    const std::set<uint64_t>& failedTracks() const { return mFailedTracks; }

  private:
    Timeline& mShown;
    std::map<uint64_t, size_t> mLaneOf;
    std::set<uint64_t> mFailedTracks;
    bool mIsOpen = false;
    bool mIsReady = false;
};

/** Collects the costs of seeks to evenly spaced times. */
class SeekRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    SeekRecords(Session& session, Report& report, Timeline& shown, std::set<uint64_t> failedTracks)
        : CommandRecords(session, report), mShown(shown), mFailedTracks(std::move(failedTracks)) {}

    // A seek's reads are those between the end of the previous seek and its own end.
    void operator()(const SeekRange&) { mCost = {}; }
    void operator()(const SourceRead& read) { mCost.add(read); }
    void operator()(const SeekLanded& landed) {
        if (!landed.landings.empty()) {
            const Landing& lead = landed.landings.front();
            mShown.seeks.push_back(
                    {landed.targetUs, lead.timeUs, lead.isSync, std::exchange(mCost, {})});
        }
    }
    void operator()(const TrackEnded& end) {
        if (end.failure && mFailedTracks.insert(end.track).second) {
            CommandRecords::operator()(end);
        }
    }

  private:
    Timeline& mShown;
    std::set<uint64_t> mFailedTracks;
    ReadCost mCost;
};

// Not even with --force: drawing would replace the file.
void requireOtherFile(const std::string& file, const fs::path& output) {
    std::error_code ignored;
    if (fs::equivalent(file, output, ignored)) {
        throw ProbeError(ExitCode::kUsage, "the timeline cannot take its file's own place");
    }
}

std::vector<std::string> failuresOf(const Report& report) {
    std::vector<std::string> failures;
    for (const Report::Failure& error : report.errors()) {
        failures.push_back(error.message);
    }
    return failures;
}

std::string outputText(const Timeline& shown, const fs::path& path) {
    const Chart chart(shown);
    return path.extension() == ".svg" ? drawingDocument(chart) : pageDocument(chart);
}

/** Plays the file and seeks in it; returns whether there is anything to draw. */
bool gather(const std::string& path, uint32_t seekSteps, Session& session, Report& report,
            Timeline& shown) {
    const OggFile file(path);
    PluginTrace trace(file, false);
    PlayRecords playing(shown);
    report.guard([&] { playTraced(path, session, report, trace, visitedBy(playing)); });
    if (playing.isOpen() && shown.lanes.empty()) {
        report.warning(kNoTracks);
    }
    const bool hasPlayed = playing.isOpen() && report.worst() < ExitCode::kNotTaken;
    if (hasPlayed && seekSteps > 0 && !shown.lanes.empty()) {
        SeekRecords seeking(session, report, shown, playing.failedTracks());
        runReported({path, seekTestJob(seekSteps), true}, session, report, seeking);
    }
    Explanation explanation(file, trace);
    report.guard([&] { explanation.setAccounts(accountsOf(path, file, trace)); });
    explainAll(explanation);
    addEvidence(explanation, shown);
    return playing.isOpen();
}

uint64_t digestOf(const std::string& path) {
    constexpr size_t kBlock = 1 << 20;
    OggScanner scanner(path);
    uint64_t digest = kEmptyDigest;
    for (uint64_t offset = 0; offset < scanner.size(); offset += kBlock) {
        digest = fnv1a64(scanner.bytes(offset, kBlock), digest);
    }
    return digest;
}

Origin originOf(const std::string& file, const TimelineOptions& options, const Session& session,
                const Timeline& shown) {
    Origin origin;
    origin.program = "ogmprobe " OGMPROBE_VERSION;
    const std::string library = fs::path(session.options.pluginPath).filename().string();
    origin.plugin = shown.file.extractor + (library.empty() ? "" : " (" + library + ")");
    origin.fileDigest = digestOf(file);
    if (options.date) {
        origin.date = fmt::format("{:%Y-%m-%d %H:%M} UTC", fmt::gmtime(std::time(nullptr)));
    }
    return origin;
}

void write(const Timeline& shown, NewFile& file) {
    const std::string text = outputText(shown, file.path());
    file.append({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    file.commit();
}

DrawnTimeline countsOf(const Timeline& shown) {
    DrawnTimeline drawn;
    drawn.tracks = shown.lanes.size();
    for (const Lane& lane : shown.lanes) {
        drawn.packets += lane.packets.size();
    }
    return drawn;
}

}  // namespace

std::optional<DrawnTimeline> drawTimeline(const TimelineTask& task, Session& session,
                                          Report& report) {
    const TimelineOptions& options = task.options;
    requireOtherFile(task.file, task.output);
    // Before anything is read: an existing file should be reported at once, not after an hour.
    NewFile drawing(task.output, options.force ? Existing::kOverwrite : Existing::kRefuse);
    Timeline shown;
    shown.fileName = fs::path(task.file).filename().string();
    if (!gather(task.file, options.seekSteps, session, report, shown)) {
        return std::nullopt;
    }
    shown.failures = failuresOf(report);
    shown.origin = originOf(task.file, options, session, shown);
    cutTo(options.fromUs, options.untilUs, shown);
    write(shown, drawing);
    return countsOf(shown);
}

}  // namespace ogmprobe::timeline
