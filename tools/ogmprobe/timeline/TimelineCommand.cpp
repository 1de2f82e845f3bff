// SPDX-License-Identifier: Apache-2.0
#include <fmt/chrono.h>
#include <fmt/core.h>

#include <ctime>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Chart.h"
#include "Drawing.h"
#include "Evidence.h"
#include "Markup.h"
#include "Page.h"
#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "explain/Finding.h"
#include "explain/OggScanner.h"
#include "explain/TracedPlay.h"
#include "files/NewFile.h"
#include "files/OutputFolder.h"
#include "records/Digest.h"
#include "text/NumberText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;
using timeline::Timeline;

/** Gathers a file's packets while it is played from its beginning. */
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
        timeline::Lane& lane = mShown.lanes.at(mLaneOf.at(played.track));
        const Packet& packet = played.packet;
        lane.packets.push_back({packet.timeUs,
                                packet.bytes.size(),
                                packet.readUpTo,
                                packet.isSync,
                                timeline::frameTypeOf(lane.track.mime, packet.bytes),
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

/** Gathers what seeks to evenly spaced times cost. */
class SeekRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    SeekRecords(Session& session, Report& report, Timeline& shown, std::set<uint64_t> failedTracks)
        : CommandRecords(session, report), mShown(shown), mFailedTracks(std::move(failedTracks)) {}

    // What a seek reads lies between the end of the one before and its own.
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
    timeline::ReadCost mCost;
};

// Not even by force: the file would be gone once it has been drawn.
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
    const timeline::Chart chart(shown);
    return path.extension() == ".svg" ? timeline::drawingDocument(chart)
                                      : timeline::pageDocument(chart);
}

void write(const Timeline& shown, NewFile& file, Output& output) {
    const std::string text = outputText(shown, file.path());
    file.append({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    file.commit();
    size_t packets = 0;
    for (const timeline::Lane& lane : shown.lanes) {
        packets += lane.packets.size();
    }
    output.write(fmt::format("timeline of {}, {}: {}\n", counted(shown.lanes.size(), "track"),
                             counted(packets, "packet"), visible(file.path().string())));
}

/** Plays the file and seeks in it; whether there is anything to draw. */
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
    timeline::addEvidence(explanation, shown);
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

timeline::Origin originOf(const std::string& file, const TimelineOptions& options,
                          const Session& session, const Timeline& shown) {
    timeline::Origin origin;
    origin.program = "ogmprobe " OGMPROBE_VERSION;
    const std::string library = fs::path(session.options.pluginPath).filename().string();
    origin.plugin = shown.file.extractor + (library.empty() ? "" : " (" + library + ")");
    origin.fileDigest = digestOf(file);
    if (options.date) {
        origin.date = fmt::format("{:%Y-%m-%d %H:%M} UTC", fmt::gmtime(std::time(nullptr)));
    }
    return origin;
}

void draw(const std::string& file, const fs::path& output, const TimelineOptions& options,
          Session& session, Report& report) {
    requireOtherFile(file, output);
    // Before anything is read: nobody wants to hear of a name that is taken after an hour.
    NewFile drawn(output, options.force ? Existing::kOverwrite : Existing::kRefuse);
    Timeline shown;
    shown.fileName = fs::path(file).filename().string();
    if (gather(file, options.seekSteps, session, report, shown)) {
        shown.failures = failuresOf(report);
        shown.origin = originOf(file, options, session, shown);
        timeline::cutTo(options.fromUs, options.untilUs, shown);
        write(shown, drawn, session.output);
    }
}

bool isPageOrDrawing(const fs::path& path) {
    return path.extension() == ".html" || path.extension() == ".svg";
}

/** Says where each file's timeline goes. */
class OutputPaths {
  public:
    explicit OutputPaths(const TimelineOptions& options) : mOptions(options) {}

    /** Throws `ProbeError` with `kUsage` where the output fits no such files. */
    void require(bool several) {
        const fs::path output = mOptions.output;
        std::error_code ignored;
        mIsFolder = several || !output.has_filename() || fs::is_directory(output, ignored);
        if (!mIsFolder && !isPageOrDrawing(output)) {
            throw ProbeError(ExitCode::kUsage,
                             mOptions.output + " ends neither in .html nor in .svg");
        }
        if (several && isPageOrDrawing(output) && !fs::is_directory(output, ignored)) {
            throw ProbeError(ExitCode::kUsage,
                             mOptions.output + " takes the timeline of one file: name a folder");
        }
    }

    fs::path of(const std::string& file) {
        if (!mIsFolder) {
            return mOptions.output;
        }
        makeFolder(mOptions.output);
        return fs::path(mOptions.output) / (mStems.take(file) + (mOptions.svg ? ".svg" : ".html"));
    }

  private:
    const TimelineOptions& mOptions;
    OutputStems mStems;
    bool mIsFolder = false;
};

}  // namespace

ExitCode runTimeline(const TimelineOptions& options, Session& session) {
    OutputPaths paths(options);
    return forEachFile(options.files, session, [&](const std::string& file, bool isOneOfMany) {
        paths.require(isOneOfMany);
        Report report(session.console, file);
        report.guard([&] { draw(file, paths.of(file), options, session, report); });
        return report.worst();
    });
}

}  // namespace ogmprobe
