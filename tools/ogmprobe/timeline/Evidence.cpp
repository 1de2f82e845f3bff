// SPDX-License-Identifier: Apache-2.0
#include "Evidence.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "explain/ExplainText.h"
#include "ledger/LossSearch.h"
#include "sync/SyncText.h"

namespace ogmprobe::timeline {
namespace {

class EvidenceBuild {
  public:
    EvidenceBuild(const Explanation& explanation, Timeline& timeline)
        : mExplanation(explanation),
          mFile(explanation.file()),
          mTimes(pageTimesOf(mFile, explanation.accounts())),
          mTimeline(timeline) {
        for (size_t i = 0; i < timeline.lanes.size(); ++i) {
            mLaneOf[timeline.lanes[i].track.index] = i;
        }
    }

    void addAll() {
        addPages();
        for (const auto& [serial, account] : mExplanation.accounts()) {
            const auto lane = laneOf(account.ledger.track);
            lane ? addToLane(account, mTimeline.lanes[*lane]) : addRefused(serial, account);
        }
        addSync();
        addLines();
        for (const Finding& finding : mExplanation.findings()) {
            addFinding(finding);
        }
    }

  private:
    std::optional<size_t> laneOf(const std::optional<uint64_t>& track) const {
        const auto lane = track ? mLaneOf.find(*track) : mLaneOf.end();
        return lane == mLaneOf.end() ? std::nullopt : std::optional(lane->second);
    }

    void addPages() {
        for (const OggPage& page : mFile.pages()) {
            mTimeline.pages.push_back({page.offset, page.end() - page.offset, page.serial,
                                       page.sequence, mFile.timeUs(page)});
        }
    }

    const OggPiece& pieceOf(const StreamAccount& account, size_t piece) const {
        return mFile.pieces()[account.packets.pieces[piece]];
    }

    /** Returns the time by its own page, or by its neighbours if that page has none. */
    int64_t timeOf(const StreamAccount& account, size_t index) const {
        if (const auto& time = mTimes.at(account.ledger.serial).units[index]) {
            return time->middleUs();
        }
        const OggPage& page = mFile.pages()[pieceOf(account, account.units[index].lastPiece).page];
        const auto own = mFile.timeUs(page);
        return own ? *own : mFile.timeBefore(page.offset).value_or(0);
    }

    LostPacket lostPacket(const StreamAccount& account, size_t index, const char* reason) const {
        const FileUnit& unit = account.units[index];
        return {timeOf(account, index), unit.fingerprint.size,
                pieceOf(account, unit.firstPiece).page, reason};
    }

    void addToLane(const StreamAccount& account, Lane& lane) {
        lane.countsFrames = account.ledger.countsFrames;
        const LossSearch search(mFile, mExplanation.trace(), account);
        for (size_t i = 0; i < account.units.size(); ++i) {
            const FileUnit& unit = account.units[i];
            const auto& buffer = account.delivery.units[i].buffer;
            if (!buffer) {
                lane.lost.push_back(lostPacket(account, i, textOf(search.reasonOf(i)).brief));
            } else if (*buffer < lane.packets.size()) {
                lane.packets[*buffer].page = pieceOf(account, unit.firstPiece).page;
            }
        }
    }

    void addRefused(uint32_t serial, const StreamAccount& account) {
        const StreamHeader* header = mFile.headerOf(serial);
        RefusedStream stream;
        stream.name = fmt::format("{}, serial number {}",
                                  header != nullptr ? header->name() : "unknown", serial);
        stream.reason = mExplanation.whyNoTrack(serial);
        for (size_t i = 0; i < account.units.size(); ++i) {
            stream.packets.push_back(lostPacket(account, i, textOf(LossReason::kNoTrack).brief));
        }
        mRefusedOf[serial] = mTimeline.refused.size();
        mTimeline.refused.push_back(std::move(stream));
    }

    PacketPoint* packetOf(const TrackSync& track, const SyncPoint& point) {
        const auto lane = laneOf(track.track);
        return lane && point.buffer && *point.buffer < mTimeline.lanes[*lane].packets.size()
                       ? &mTimeline.lanes[*lane].packets[*point.buffer]
                       : nullptr;
    }

    void addSync() {
        const FileSync sync =
                fileSyncOf(mFile, mExplanation.trace(), mExplanation.accounts(), mTimes);
        for (const TrackSync& track : sync.tracks) {
            for (const SyncPoint& point : track.points) {
                if (PacketPoint* packet = packetOf(track, point)) {
                    packet->pageUs = point.pageUs;
                }
            }
        }
        for (const PairSync& pair : sync.pairs) {
            const TrackSync& audio = sync.tracks[pair.audio];
            for (const PairPoint& point : pair.points) {
                if (PacketPoint* packet = packetOf(audio, audio.points[point.audioPoint])) {
                    packet->lateByVideoUs = point.lateUs;
                }
            }
        }
        if (!sync.tracks.empty()) {
            mTimeline.worstTimes = worstSentence(sync);
        }
    }

    void addLines() {
        for (const LoggedLine& line : mExplanation.trace().lines()) {
            const auto page = line.offset ? mFile.pageAt(*line.offset) : std::nullopt;
            if (page) {
                mTimeline.lines.push_back({static_cast<uint32_t>(*page), lineText(line)});
            }
        }
        std::stable_sort(
                mTimeline.lines.begin(), mTimeline.lines.end(),
                [](const PageLine& left, const PageLine& right) { return left.page < right.page; });
    }

    /** Returns the finding's times, or those of the pages around its place. */
    std::optional<TimeSpan> spanOf(const Finding& finding) const {
        auto first = finding.timeUs;
        auto last = finding.untilUs ? finding.untilUs : finding.timeUs;
        if (!first && finding.offset) {
            first = mFile.timeBefore(*finding.offset);
            last = mFile.timeAfter(*finding.offset + finding.bytes.value_or(0));
            first = first ? first : last;
            last = last ? last : first;
        }
        if (!first) {
            return std::nullopt;
        }
        const auto [least, most] = std::minmax(*first, *last);
        return TimeSpan{least, most};
    }

    void addFinding(const Finding& finding) {
        ShownFinding shown;
        shown.id = finding.id;
        shown.text = finding.text;
        shown.line = finding.line ? lineText(*finding.line) : "";
        shown.usual = finding.usual;
        shown.lane = laneOf(finding.track);
        if (const auto stream = mRefusedOf.find(finding.serial.value_or(0));
            !shown.lane && finding.serial && stream != mRefusedOf.end()) {
            shown.refused = stream->second;
        }
        shown.offset = finding.offset;
        shown.span = spanOf(finding);
        mTimeline.findings.push_back(std::move(shown));
    }

    const Explanation& mExplanation;
    const OggFile& mFile;
    const std::map<uint32_t, PageTimes> mTimes;
    Timeline& mTimeline;
    std::map<uint64_t, size_t> mLaneOf;
    std::map<uint32_t, size_t> mRefusedOf;
};

}  // namespace

void addEvidence(const Explanation& explanation, Timeline& timeline) {
    EvidenceBuild(explanation, timeline).addAll();
}

}  // namespace ogmprobe::timeline
