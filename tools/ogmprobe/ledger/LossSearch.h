// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ledger/LedgerBuild.h"

namespace ogmprobe {

/**
 * Returns how many bytes the plug-in uses for a frame: its table of AC-3 frame sizes lacks the row
 * of frmsizecod 3.
 */
uint64_t takenSize(const FileUnit& unit);

/** Finds out, from the plug-in's reads and log lines, why units of a stream were not returned. */
class LossSearch {
  public:
    /** All must outlive this object. */
    LossSearch(const OggFile& file, const PluginTrace& trace, const StreamAccount& account);

    LossReason reasonOf(size_t unit) const;

  private:
    std::optional<LossReason> reasonOfPages(const FileUnit& unit) const;
    std::optional<LossReason> reasonOfPieces(const FileUnit& unit) const;
    LossReason reasonOfPacket(size_t unit) const;
    LossReason reasonOfFrame(size_t unit) const;
    LossReason reasonOfWaiting(size_t unit) const;
    LossReason reasonOfWaitingFrame(size_t unit) const;
    std::optional<LossReason> thrownAway(size_t unit) const;
    void findOut();
    bool isInFrameBefore(size_t unit) const;
    bool saidInUnit(PieceEvent event, const FileUnit& unit) const;
    bool isLostAsFirst(size_t unit) const;
    bool isFalseFrameNear(size_t unit) const;
    bool saidUpTo(PieceEvent event, size_t piece) const;
    size_t fileIndex(size_t piece) const { return mAccount.packets.pieces[piece]; }
    bool isPlayedToItsEnd() const;
    bool hasUnreadablePage() const;

    const OggFile& mFile;
    const PluginTrace& mTrace;
    const StreamAccount& mAccount;
    /** The last piece of the stream that was read. */
    std::optional<size_t> mLastRead;
    /** Where the bytes of the elementary stream that arrived end. */
    uint64_t mArrived = 0;
    /** The first and the last returned unit. */
    std::optional<size_t> mFirstOut;
    std::optional<size_t> mLastOut;
    /** For each unit the nearest returned unit before it, and the nearest after it. */
    std::vector<std::optional<size_t>> mOutBefore;
    std::vector<std::optional<size_t>> mOutAfter;
    /** The first and the last unit whose bytes were read and not dropped. */
    std::optional<size_t> mFirstQueued;
    std::optional<size_t> mLastQueued;
    /** The first one that cannot be returned. */
    std::optional<size_t> mStuck;
};

}  // namespace ogmprobe
