// SPDX-License-Identifier: Apache-2.0
#include "Evidence.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "explain/ExplainText.h"
#include "ledger/LossSearch.h"

namespace ogmprobe::timeline {
namespace {

class EvidenceBuild {
  public:
    EvidenceBuild(const Explanation& explanation, Timeline& timeline)
        : mExplanation(explanation), mFile(explanation.file()), mTimeline(timeline) {
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

    LostPacket lostPacket(const StreamAccount& account, const FileUnit& unit, const char* reason) {
        const uint32_t page = pieceOf(account, unit.lastPiece).page;
        // A page on which no packet ends tells no time: that of the one before is near.
        mTimeUs = mFile.timeUs(mFile.pages()[page]).value_or(mTimeUs);
        return {mTimeUs, unit.likeness.size, pieceOf(account, unit.firstPiece).page, reason};
    }

    void addToLane(const StreamAccount& account, Lane& lane) {
        lane.countsFrames = account.ledger.countsFrames;
        const LossSearch search(mFile, mExplanation.trace(), account);
        for (size_t i = 0; i < account.units.size(); ++i) {
            const FileUnit& unit = account.units[i];
            const auto& buffer = account.delivery.units[i].buffer;
            if (!buffer) {
                lane.lost.push_back(lostPacket(account, unit, textOf(search.reasonOf(i)).brief));
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
        for (const FileUnit& unit : account.units) {
            stream.packets.push_back(lostPacket(account, unit, textOf(LossReason::kNoTrack).brief));
        }
        mRefusedOf[serial] = mTimeline.refused.size();
        mTimeline.refused.push_back(std::move(stream));
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

    /** The times of the pages around the place, where the finding does not tell any itself. */
    std::optional<TimeSpan> spanOf(const Finding& finding) const {
        auto first = finding.timeUs;
        auto last = finding.untilUs ? finding.untilUs : finding.timeUs;
        if (!first && finding.offset) {
            first = mFile.timeBefore(*finding.offset);
            last = mFile.timeBehind(*finding.offset + finding.bytes.value_or(0));
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
    Timeline& mTimeline;
    std::map<uint64_t, size_t> mLaneOf;
    std::map<uint32_t, size_t> mRefusedOf;
    /** Of the page looked at last. */
    int64_t mTimeUs = 0;
};

}  // namespace

void addEvidence(const Explanation& explanation, Timeline& timeline) {
    EvidenceBuild(explanation, timeline).addAll();
}

}  // namespace ogmprobe::timeline
