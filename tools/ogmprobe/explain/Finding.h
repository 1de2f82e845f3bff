// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "explain/OggFile.h"
#include "explain/PluginTrace.h"
#include "ledger/LedgerBuild.h"

namespace ogmprobe {

/** Something that the plug-in makes of a file otherwise than its user may expect, and why. */
struct Finding {
    /** For programs; never changes. */
    std::string id;
    /** In plain words. */
    std::string text;
    /** True of every such file: no sign of anything wrong. */
    bool usual = false;
    std::optional<uint64_t> track;
    std::optional<uint32_t> serial;
    std::optional<uint64_t> offset;
    std::optional<uint64_t> bytes;
    /** Where in the playing time it is. */
    std::optional<int64_t> timeUs;
    std::optional<int64_t> untilUs;
    /** The line that shows it. */
    std::optional<LoggedLine> line;
};

/** A file, what the plug-in did with it, and what is found by comparing the two. */
class Explanation {
  public:
    /** Both must outlive this object. */
    Explanation(const OggFile& file, const PluginTrace& trace) : mFile(file), mTrace(trace) {}

    const OggFile& file() const { return mFile; }
    const PluginTrace& trace() const { return mTrace; }

    /** By serial numbers; none before they are set. */
    const std::map<uint32_t, StreamAccount>& accounts() const { return mAccounts; }
    void setAccounts(std::map<uint32_t, StreamAccount> accounts) {
        mAccounts = std::move(accounts);
    }

    /** In the order in which they were added. */
    const std::vector<Finding>& findings() const { return mFindings; }
    void add(Finding finding) { mFindings.push_back(std::move(finding)); }

    /** Why the stream has no track, in a few words. */
    std::string whyNoTrack(uint32_t serial) const {
        const auto reason = mNoTrack.find(serial);
        return reason == mNoTrack.end() ? "" : reason->second;
    }
    void addNoTrack(const std::string& reason, Finding finding) {
        mNoTrack.emplace(finding.serial.value_or(0), reason);
        add(std::move(finding));
    }

  private:
    const OggFile& mFile;
    const PluginTrace& mTrace;
    std::map<uint32_t, StreamAccount> mAccounts;
    std::vector<Finding> mFindings;
    std::map<uint32_t, std::string> mNoTrack;
};

/** A copy of the line, if there is one. */
inline std::optional<LoggedLine> copied(const LoggedLine* line) {
    return line != nullptr ? std::optional(*line) : std::nullopt;
}

/** "track 0", or the serial number of a stream without a track. */
std::string trackText(const Explanation& explanation, uint32_t serial);

/** A finding without words about the whole track. */
Finding findingOf(const char* id, uint64_t track, std::optional<uint32_t> serial);

/** A finding without words about the page. */
Finding findingAt(const Explanation& explanation, const char* id, const OggPage& page);

/** Adds all findings. The file was read to its end before. */
void explainAll(Explanation& explanation);

// Each of these adds what it finds.

/** Why the plug-in does not take the file. */
void explainRefusal(Explanation& explanation);
/** Why streams have no track, or a track no codec configuration. */
void explainStreams(Explanation& explanation);
/** Why the duration is unknown, or not that of the file. */
void explainDuration(Explanation& explanation);
/** Junk, damaged pages, lost and dropped packets. */
void explainDamage(Explanation& explanation);
/** What junk costs beyond being skipped. */
void explainJunkSearches(Explanation& explanation);
/** Packets of which no audio frame can be made. */
void explainAudio(Explanation& explanation);
/** Packets that do not come out, and why reading ended. */
void explainEnd(Explanation& explanation);
/** What the ledgers say beyond that. */
void explainLedgers(Explanation& explanation);
/** Formats that do not say what the streams hold. */
void explainFormats(Explanation& explanation);
/** Times that are negative, stand still or step back. */
void explainTimes(Explanation& explanation);
/** Log lines that say something else than what is so. */
void explainLines(Explanation& explanation);

/** What in the file ended the plug-in, or keeps it busy for ever; empty if it is not known. */
std::string causeOfEnd(const Explanation& explanation, const std::string& message);

}  // namespace ogmprobe
