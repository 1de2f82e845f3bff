// SPDX-License-Identifier: Apache-2.0
#include "check/FileCheck.h"

#include "check/Judgement.h"
#include "commands/CommandRecords.h"
#include "explain/Finding.h"
#include "explain/TracedPlay.h"

namespace ogmprobe::check {
namespace {

constexpr const char* kPluginUnusable = "plugin-unusable";

/** Collects the records of a traced playback. */
class CheckRecords : public CommandRecords {
  public:
    CheckRecords(Session& session, Report& report, PluginTrace& trace, CheckedFile& file)
        : CommandRecords(session, report), mTrace(trace), mFile(file) {}

    void operator()(const PacketPlayed& played) {
        mPackets[played.track].add(played.packet);
        mTrace.add(played);
    }
    void operator()(const Failure& failure) {
        mFile.failures.push_back({failure.code, failure.message});
        if (failure.ofPlugin) {
            mFile.reasons.push_back(reasonOf(kPluginUnusable, failure.message));
        }
        mTrace.add(failure);
    }
    void operator()(const TrackEnded& ended) { mTrace.add(ended); }
    void operator()(const LogLine& line) {
        mTrace.add(line);
        CommandRecords::operator()(line);
    }
    template <typename T>
    void operator()(const T& record) {
        if constexpr (requires { mTrace.add(record); }) {
            mTrace.add(record);
        }
    }

    const PlayedTracksPackets& packets() const { return mPackets; }

  private:
    PluginTrace& mTrace;
    CheckedFile& mFile;
    PlayedTracksPackets mPackets;
};

/** Adds failures of the plug-in that no finding reports. */
void addFailures(const PluginTrace& trace, CheckedFile& file) {
    const auto& failure = trace.failure();
    if (!failure) {
        return;
    }
    const char* id = failure->code == ExitCode::kNotTaken ? "not-taken"
                     : failure->code == ExitCode::kDied   ? "extractor-ended"
                                                          : kCannotRead;
    for (const Reason& reason : file.reasons) {
        if (reason.id == id) {
            return;
        }
    }
    file.reasons.push_back(reasonOf(id, failure->message));
}

void checkOpened(const std::string& path, const DecoderList& decoders, Session& session,
                 CheckedFile& file) {
    const OggFile pages(path);
    file.sizeBytes = pages.size();
    PluginTrace trace(pages, false);
    Report report(session.console, path);
    CheckRecords records(session, report, trace, file);
    playWithLines(path, session, visitedBy(records));
    Explanation explanation(pages, trace);
    explanation.setAccounts(accountsOf(path, pages, trace));
    explainAll(explanation);
    judge({explanation, records.packets(), decoders}, file);
    addFailures(trace, file);
}

}  // namespace

CheckedFile checkFile(const std::string& path, const DecoderList& decoders, Session& session) {
    CheckedFile file;
    file.path = path;
    try {
        checkOpened(path, decoders, session, file);
    } catch (const ProbeError& error) {
        file.failures.push_back({error.code(), error.what()});
        file.reasons.push_back(reasonOf(kCannotRead, error.what()));
    }
    return file;
}

void requirePlugin(const CheckedFile& file) {
    for (const Reason& reason : file.reasons) {
        if (reason.id == kPluginUnusable) {
            throw ProbeError(file.failures.front().code, reason.text);
        }
    }
}

CheckedFile uncheckedFile(const std::string& path, const char* reason, ExitCode code,
                          const std::string& message) {
    CheckedFile file;
    file.path = path;
    file.reasons.push_back(reasonOf(reason, message));
    file.failures.push_back({code, message});
    return file;
}

}  // namespace ogmprobe::check
