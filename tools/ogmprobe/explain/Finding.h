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

/** Something in the plug-in's results that a user may not expect, and its reason. */
struct Finding {
    /** Identifier for programs; never changes. */
    std::string id;
    /** A sentence for users. */
    std::string text;
    /** The same for every such file, so not a sign of a fault. */
    bool usual = false;
    std::optional<uint64_t> track;
    std::optional<uint32_t> serial;
    std::optional<uint64_t> offset;
    std::optional<uint64_t> bytes;
    /** Where it is in playing time. */
    std::optional<int64_t> timeUs;
    std::optional<int64_t> untilUs;
    /** The line that shows it. */
    std::optional<LoggedLine> line;
};

/** A file, what the plug-in did with it, and the findings from comparing the two. */
class Explanation {
  public:
    /** Both must outlive this object. */
    Explanation(const OggFile& file, const PluginTrace& trace) : mFile(file), mTrace(trace) {}

    const OggFile& file() const { return mFile; }
    const PluginTrace& trace() const { return mTrace; }

    /** Returns accounts by serial number; empty before they are set. */
    const std::map<uint32_t, StreamAccount>& accounts() const { return mAccounts; }
    void setAccounts(std::map<uint32_t, StreamAccount> accounts) {
        mAccounts = std::move(accounts);
    }

    /** In the order in which they were added. */
    const std::vector<Finding>& findings() const { return mFindings; }
    void add(Finding finding) { mFindings.push_back(std::move(finding)); }

    /** Returns in a few words why the stream has no track. */
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

/** Returns a copy of the line, if there is one. */
inline std::optional<LoggedLine> copied(const LoggedLine* line) {
    return line != nullptr ? std::optional(*line) : std::nullopt;
}

/** Returns "track 0", or the serial number of a stream without a track. */
std::string trackText(const Explanation& explanation, uint32_t serial);

/** Returns a finding about the whole track, without a text. */
Finding findingOf(const char* id, uint64_t track, std::optional<uint32_t> serial);

/** Returns a finding about the page, without a text. */
Finding findingAt(const Explanation& explanation, const char* id, const OggPage& page);

/** Adds all findings. The file must have been read to its end. */
void explainAll(Explanation& explanation);

// Each of these adds findings.

/** Why the plug-in does not accept the file. */
void explainRefusal(Explanation& explanation);
/** Why streams have no track, or a track no codec configuration. */
void explainStreams(Explanation& explanation);
/** Why the duration is unknown or wrong. */
void explainDuration(Explanation& explanation);
/** Junk, damaged pages, lost and dropped packets. */
void explainDamage(Explanation& explanation);
/** The cost of junk, apart from skipping it. */
void explainJunkSearches(Explanation& explanation);
/** Packets from which no audio frame can be cut. */
void explainAudio(Explanation& explanation);
/** Packets that are not returned, and why reading ended. */
void explainEnd(Explanation& explanation);
/** Other findings from the ledgers. */
void explainLedgers(Explanation& explanation);
/** Formats that differ from the streams. */
void explainFormats(Explanation& explanation);
/** Times that are negative, do not advance or step back. */
void explainTimes(Explanation& explanation);
/** Log lines that say something wrong. */
void explainLines(Explanation& explanation);

/**
 * Returns what in the file ended the plug-in, or makes it search forever; empty if unknown.
 */
std::string causeOfEnd(const Explanation& explanation, const std::string& message);

}  // namespace ogmprobe
