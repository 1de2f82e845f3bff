// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <array>

#include "explain/Finding.h"
#include "ledger/LossSearch.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

std::string verb(uint64_t count, const char* one, const char* several) {
    return count == 1 ? one : several;
}

void explainLoss(Explanation& explanation, const Ledger& ledger, const Loss& loss) {
    const LossText& reason = textOf(loss.reason);
    if (reason.text == nullptr) {
        return;
    }
    const bool isUnknown = loss.reason == LossReason::kUnknown;
    Finding finding =
            findingOf(isUnknown ? "packets-missing" : reason.id, *ledger.track, ledger.serial);
    finding.usual = reason.usual;
    finding.text =
            fmt::format("{} of track {} {}{}.", counted(loss.count, ledger.noun()), *ledger.track,
                        isUnknown ? verb(loss.count, "is missing and ", "are missing and ")
                                  : verb(loss.count, "is not returned: ", "are not returned: "),
                        reason.text);
    finding.offset = loss.offset;
    finding.timeUs = loss.timeUs;
    finding.untilUs = loss.lastTimeUs;
    explanation.add(std::move(finding));
}

/** Why a returned unit differs from the file. */
enum class Change { kForeignTail, kAc3Table, kPacketHeader, kCutAtSync, kUnknown };

struct ChangeText {
    const char* id;
    const char* text;
};

constexpr std::array<ChangeText, 5> kChangeTexts = {{
        {"foreign-tail",
         "returned with bytes of another packet after their own: a piece whose packet was "
         "dropped, "
         "or has no beginning in the file, is added to the open packet"},
        {"ac3-frame-size",
         "returned with the size of another row: the plug-in's table of AC-3 frame sizes lacks the "
         "row of frmsizecod 3, so that each row after it is the standard's next one"},
        {"audio-packet-header",
         "returned with too few or too many bytes: the plug-in's rule for the size of an audio "
         "packet's header (3 to 10 bytes) differs from the format's"},
        {"dts-frame-cut", "returned in two buffers: a frame ends at a sync word"},
        {"packets-changed", "returned changed, for no known reason"},
}};

Change changeOf(const FileUnit& unit, const PlayedBuffer& buffer, const StreamAccount& account) {
    if (unit.withForeignTail) {
        return Change::kForeignTail;
    }
    if (account.kind.framing == AudioFraming::kAc3 && buffer.fingerprint.size == takenSize(unit) &&
        buffer.fingerprint.size != unit.fingerprint.size) {
        return Change::kAc3Table;
    }
    if (unit.hasOddHeader) {
        return Change::kPacketHeader;
    }
    return account.kind.framing == AudioFraming::kDts &&
                           buffer.fingerprint.size < unit.fingerprint.size
                   ? Change::kCutAtSync
                   : Change::kUnknown;
}

/** The first unit of each change, and the number of them. */
struct Changes {
    std::array<uint64_t, kChangeTexts.size()> counts{};
    std::array<size_t, kChangeTexts.size()> first{};

    void add(Change change, size_t unit) {
        const auto index = static_cast<size_t>(change);
        first[index] = counts[index] == 0 ? unit : first[index];
        ++counts[index];
    }
};

Changes changesOf(const StreamAccount& account, const PlayedTrack& track) {
    Changes changes;
    for (size_t i = 0; i < account.units.size(); ++i) {
        const FileUnit& unit = account.units[i];
        const Delivery::Unit& delivered = account.delivery.units[i];
        // Both sides remove the header of a plain packet by the plug-in's rule.
        const bool isPlainOdd = !account.kind.framing && unit.hasOddHeader;
        if (delivered.buffer && (delivered.isChanged || isPlainOdd)) {
            changes.add(changeOf(unit, track.buffers[*delivered.buffer], account), i);
        }
    }
    return changes;
}

void explainChanges(Explanation& explanation, const StreamAccount& account) {
    const Ledger& ledger = account.ledger;
    const Changes changes = changesOf(account, explanation.trace().tracks().at(*ledger.track));
    for (size_t i = 0; i < kChangeTexts.size(); ++i) {
        if (changes.counts[i] == 0) {
            continue;
        }
        Finding finding = findingOf(kChangeTexts[i].id, *ledger.track, ledger.serial);
        finding.text = fmt::format("{} of track {} {} {}.",
                                   counted(changes.counts[i], ledger.noun()), *ledger.track,
                                   verb(changes.counts[i], "is", "are"), kChangeTexts[i].text);
        const FileUnit& first = account.units[changes.first[i]];
        const OggPiece& piece =
                explanation.file().pieces()[account.packets.pieces[first.firstPiece]];
        finding.offset = piece.offset;
        finding.timeUs = explanation.file().timeUs(explanation.file().pages()[piece.page]);
        explanation.add(std::move(finding));
    }
}

void explainFalseFrames(Explanation& explanation, const StreamAccount& account) {
    const FalseFrames& frames = account.falseFrames;
    if (frames.count == 0) {
        return;
    }
    Finding finding = findingOf("false-frames", *account.ledger.track, account.ledger.serial);
    finding.text = fmt::format(
            "{} of track {} {} no frame of the file: bytes of its packets begin with a sync word "
            "where no frame follows another, and were cut as if one did.",
            counted(frames.count, "buffer"), *account.ledger.track,
            verb(frames.count, "holds", "hold"));
    finding.offset = frames.offset;
    explanation.add(std::move(finding));
}

void explainStrays(Explanation& explanation, const StreamAccount& account) {
    const Ledger& ledger = account.ledger;
    if (ledger.repeated > 0) {
        Finding finding = findingOf("packets-repeated", *ledger.track, ledger.serial);
        finding.text = fmt::format("{} of track {} {} what was returned before.",
                                   counted(ledger.repeated, "buffer"), *ledger.track,
                                   verb(ledger.repeated, "repeats", "repeat"));
        explanation.add(std::move(finding));
    }
    if (const uint64_t unknown = ledger.foreign - account.falseFrames.count; unknown > 0) {
        Finding finding = findingOf("buffers-not-in-file", *ledger.track, ledger.serial);
        finding.text = fmt::format(
                "{} of track {} {} bytes that are no {} of the file, and no "
                "reason is known.",
                counted(unknown, "buffer"), *ledger.track, verb(unknown, "holds", "hold"),
                ledger.noun());
        explanation.add(std::move(finding));
    }
}

void explainLedger(Explanation& explanation, const StreamAccount& account) {
    const Ledger& ledger = account.ledger;
    if (!ledger.track) {
        return;
    }
    for (const Loss& loss : ledger.losses) {
        explainLoss(explanation, ledger, loss);
    }
    explainChanges(explanation, account);
    explainFalseFrames(explanation, account);
    explainStrays(explanation, account);
}

}  // namespace

void explainLedgers(Explanation& explanation) {
    for (const auto& [serial, account] : explanation.accounts()) {
        explainLedger(explanation, account);
    }
}

}  // namespace ogmprobe
