// SPDX-License-Identifier: Apache-2.0
#include "ledger/LossSearch.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ogmprobe {
namespace {

constexpr std::array<std::pair<PieceEvent, LossReason>, 3> kThrownAway = {{
        {PieceEvent::kNoFrameConfirmed, LossReason::kNotConfirmed},
        {PieceEvent::kNoMatchingFrame, LossReason::kUnlikeFirst},
        {PieceEvent::kFrameWithoutSize, LossReason::kWithoutSize},
}};

}  // namespace

uint64_t takenSize(const FileUnit& unit) {
    constexpr uint32_t kMissingRow = 3;
    const AudioFrame& frame = unit.frame;
    return frame.kind == AudioFrame::Kind::kAc3 && frame.frameSizeCode >= kMissingRow
                   ? ac3FrameSize(frame.sampleRate, frame.frameSizeCode + 1)
                   : unit.fingerprint.size;
}

LossSearch::LossSearch(const OggFile& file, const PluginTrace& trace, const StreamAccount& account)
    : mFile(file), mTrace(trace), mAccount(account) {
    for (size_t i = 0; i < account.packets.pieces.size(); ++i) {
        if (trace.wasRead(fileIndex(i))) {
            mLastRead = i;
        }
    }
    findOut();
    for (size_t i = 0; i < account.units.size(); ++i) {
        const FileUnit& unit = account.units[i];
        const size_t arrival = account.kind.framing ? unit.lastPiece : unit.firstPiece;
        if (!trace.wasRead(fileIndex(arrival)) || reasonOfPieces(unit)) {
            continue;
        }
        mFirstQueued = mFirstQueued.value_or(i);
        mLastQueued = i;
        mArrived = unit.position + unit.fingerprint.size;
        if (unit.isTooShort && !mStuck) {
            mStuck = i;
        }
    }
}

void LossSearch::findOut() {
    const auto& units = mAccount.delivery.units;
    mOutBefore.resize(units.size());
    mOutAfter.resize(units.size());
    for (size_t i = 0; i < units.size(); ++i) {
        mOutBefore[i] = mLastOut;
        mLastOut = units[i].buffer ? i : mLastOut;
    }
    for (size_t i = units.size(); i-- > 0;) {
        mOutAfter[i] = mFirstOut;
        mFirstOut = units[i].buffer ? i : mFirstOut;
    }
}

LossReason LossSearch::reasonOf(size_t index) const {
    const FileUnit& unit = mAccount.units[index];
    if (!mAccount.ledger.track) {
        return LossReason::kNoTrack;
    }
    if (const auto reason = reasonOfPieces(unit)) {
        return *reason;
    }
    if (const auto reason = reasonOfPages(unit)) {
        return *reason;
    }
    return mAccount.kind.framing ? reasonOfFrame(index) : reasonOfPacket(index);
}

bool LossSearch::isPlayedToItsEnd() const {
    const PlayedTrack& track = mTrace.tracks().at(*mAccount.ledger.track);
    return track.ended && !track.failure && !mTrace.failure();
}

std::optional<LossReason> LossSearch::reasonOfPages(const FileUnit& unit) const {
    const auto& stream = mFile.streams().at(mAccount.ledger.serial);
    // A packet that continues on a page that was not read stays open.
    const size_t last = mAccount.kind.framing ? unit.lastPiece : unit.firstPiece;
    for (size_t i = unit.firstPiece; i <= last; ++i) {
        if (mTrace.wasRead(fileIndex(i))) {
            continue;
        }
        if (mLastRead && i < *mLastRead) {
            return hasUnreadablePage() ? LossReason::kPassedOver : LossReason::kUnknown;
        }
        if (!isPlayedToItsEnd()) {
            return LossReason::kNotPlayed;
        }
        const uint32_t page = mFile.pieces()[fileIndex(i)].page;
        const bool isLast = !stream.dataPages.empty() && page == stream.dataPages.back();
        return isLast ? LossReason::kLastPage : LossReason::kReadingStopped;
    }
    return std::nullopt;
}

bool LossSearch::hasUnreadablePage() const {
    return std::any_of(mFile.pages().begin(), mFile.pages().end(),
                       [](const OggPage& page) { return !page.isReadable(); });
}

/** Checks for whole pieces that were dropped. */
std::optional<LossReason> LossSearch::reasonOfPieces(const FileUnit& unit) const {
    if (!mAccount.kind.framing) {
        const bool isDropped = mTrace.said(PieceEvent::kGranuleFell, fileIndex(unit.firstPiece));
        return isDropped ? std::optional(LossReason::kGranuleFell) : std::nullopt;
    }
    if (saidInUnit(PieceEvent::kGranuleFell, unit)) {
        return LossReason::kGranuleFell;
    }
    if (saidInUnit(PieceEvent::kTooShort, unit)) {
        return LossReason::kPieceTooShort;
    }
    if (saidInUnit(PieceEvent::kNoSync, unit)) {
        return LossReason::kNoSync;
    }
    return std::nullopt;
}

bool LossSearch::saidInUnit(PieceEvent event, const FileUnit& unit) const {
    for (size_t i = unit.firstPiece; i <= unit.lastPiece; ++i) {
        if (mTrace.said(event, fileIndex(i))) {
            return true;
        }
    }
    return false;
}

LossReason LossSearch::reasonOfPacket(size_t index) const {
    if (mStuck && index >= *mStuck) {
        return index == *mStuck ? LossReason::kWithoutContent : LossReason::kAfterStuckPacket;
    }
    return mLastOut && index < *mLastOut ? LossReason::kUnknown : reasonOfWaiting(index);
}

/** For a unit that has arrived and has no returned unit after it. */
LossReason LossSearch::reasonOfWaiting(size_t index) const {
    if (!isPlayedToItsEnd()) {
        return LossReason::kNotPlayed;
    }
    if (index == mLastQueued) {
        return LossReason::kStaysQueued;
    }
    return LossReason::kEndReportedFirst;
}

LossReason LossSearch::reasonOfFrame(size_t index) const {
    const FileUnit& unit = mAccount.units[index];
    if (const auto reason = thrownAway(index)) {
        return *reason;
    }
    if (unit.hasOddHeader) {
        return LossReason::kPacketHeader;
    }
    if (isInFrameBefore(index)) {
        return LossReason::kInFrameBefore;
    }
    if (isLostAsFirst(index)) {
        return LossReason::kFirstFrame;
    }
    if (mLastOut && index < *mLastOut) {
        return isFalseFrameNear(index) ? LossReason::kFalseFrame : LossReason::kUnknown;
    }
    return isPlayedToItsEnd() ? reasonOfWaitingFrame(index) : LossReason::kNotPlayed;
}

/**
 * For a frame that has arrived and has no returned frame after it. The first of these stays queued;
 * the others wait for bytes, or the plug-in treats them as a part of the frame before.
 */
LossReason LossSearch::reasonOfWaitingFrame(size_t index) const {
    if (!mLastOut) {
        return reasonOfWaiting(index);
    }
    const PlayedTrack& track = mTrace.tracks().at(*mAccount.ledger.track);
    const FileUnit& last = mAccount.units[*mLastOut];
    uint64_t taken = last.position +
                     track.buffers[*mAccount.delivery.units[*mLastOut].buffer].fingerprint.size;
    for (size_t i = *mLastOut + 1; i <= index; ++i) {
        const FileUnit& unit = mAccount.units[i];
        const bool isWithin = unit.position < taken;
        const uint64_t end = unit.position + takenSize(unit);
        if (i == index) {
            return isWithin             ? LossReason::kInFrameBefore
                   : end > mArrived     ? LossReason::kWaitsForBytes
                   : i == *mLastOut + 1 ? LossReason::kStaysQueued
                   : i == *mLastQueued  ? LossReason::kWaitsForBytes
                                        : (isFalseFrameNear(index) ? LossReason::kFalseFrame
                                                                   : LossReason::kUnknown);
        }
        taken = isWithin ? taken : end;
    }
    return LossReason::kUnknown;
}

/** Checks whether the frame, or a part of it, was dropped with the buffered bytes. */
std::optional<LossReason> LossSearch::thrownAway(size_t index) const {
    const FileUnit& unit = mAccount.units[index];
    const auto next = mOutAfter[index];
    const size_t end = (next ? mAccount.units[*next].firstPiece : mLastRead.value_or(0)) + 1;
    for (size_t i = unit.firstPiece; i < end; ++i) {
        for (const auto& [event, reason] : kThrownAway) {
            if (!mTrace.said(event, fileIndex(i))) {
                continue;
            }
            const bool isOther = unit.frame.family != mAccount.units.front().frame.family;
            return reason == LossReason::kUnlikeFirst && isOther ? LossReason::kRateChanged
                                                                 : reason;
        }
    }
    return std::nullopt;
}

bool LossSearch::isInFrameBefore(size_t index) const {
    const auto before = mOutBefore[index];
    if (!before) {
        return false;
    }
    const PlayedTrack& track = mTrace.tracks().at(*mAccount.ledger.track);
    const auto& buffer = track.buffers[*mAccount.delivery.units[*before].buffer];
    return mAccount.units[*before].position + buffer.fingerprint.size >
           mAccount.units[index].position;
}

/**
 * Returns whether it is the first frame that arrived, and the next frame confirmed its header and
 * was returned.
 */
bool LossSearch::isLostAsFirst(size_t index) const {
    if (index != mFirstQueued || !mFirstOut ||
        mAccount.units[index].frame.kind != AudioFrame::Kind::kMpegAudio) {
        return false;
    }
    for (size_t i = index + 1; i < *mFirstOut; ++i) {
        if (!reasonOfPieces(mAccount.units[i])) {
            return false;
        }
    }
    return saidUpTo(PieceEvent::kFrameConfirmed, mAccount.units[*mFirstOut].lastPiece);
}

/**
 * Returns whether a buffer between its returned neighbours matches no unit of the file, or a
 * changed one.
 */
bool LossSearch::isFalseFrameNear(size_t index) const {
    const auto& delivery = mAccount.delivery;
    const auto before = mOutBefore[index];
    const auto after = mOutAfter[index];
    const auto isChanged = [&](const std::optional<size_t>& unit) {
        return unit && delivery.units[*unit].isChanged;
    };
    const size_t from = before ? *delivery.units[*before].buffer : 0;
    const size_t to = after ? *delivery.units[*after].buffer : SIZE_MAX;
    return isChanged(before) || isChanged(after) ||
           std::any_of(delivery.foreign.begin(), delivery.foreign.end(),
                       [&](size_t buffer) { return buffer >= from && buffer < to; });
}

bool LossSearch::saidUpTo(PieceEvent event, size_t piece) const {
    for (size_t i = 0; i <= piece; ++i) {
        if (mTrace.said(event, fileIndex(i))) {
            return true;
        }
    }
    return false;
}

}  // namespace ogmprobe
