// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "explain/JunkSearches.h"
#include "explain/OggFile.h"
#include "jobs/PlayLimit.h"
#include "records/Fingerprint.h"
#include "records/Records.h"

namespace ogmprobe {

/** A log line and where the plug-in was when it wrote it. */
struct LoggedLine {
    int32_t priority = 0;
    std::string tag;
    std::string text;
    PluginFunction function = PluginFunction::kNone;
    /** Where the call's last read before the line began; nothing if there was no read. */
    std::optional<int64_t> offset;
    /** How often it was written at this place. */
    uint64_t count = 0;
};

/** What the plug-in logged right after it had read a piece of a packet. */
enum class PieceEvent : uint8_t {
    kGranuleFell,
    kTooShort,
    kNoSync,
    kFrameConfirmed,
    kNoFrameConfirmed,
    kNoMatchingFrame,
    kFrameWithoutSize,
};

/** A buffer that a track returned. */
struct PlayedBuffer {
    Fingerprint fingerprint;
    int64_t timeUs = 0;
};

/** What a track returned. */
struct PlayedTrack {
    TrackDescription description;
    std::optional<uint32_t> serial;
    /** The plug-in's number for the track's codec. */
    std::optional<int64_t> streamType;
    /** In the order of reading. */
    std::vector<PlayedBuffer> buffers;
    bool beginsWithComment = false;
    bool ended = false;
    std::optional<std::string> failure;
};

/**
 * Collects from a traced job what the plug-in did with the pages of a file while it opened it and
 * read it to its end.
 */
class PluginTrace {
  public:
    /** Routine lines are kept only with `allLines`. The file must outlive this object. */
    PluginTrace(const OggFile& file, bool allLines);

    void add(const FileOpened& opened) { mOpened = opened; }
    void add(const TrackStarted& started) {
        mTracks[started.track.index].description = started.track;
    }
    void add(const PacketPlayed& played);
    void add(const TrackEnded& ended);
    void add(const Failure& failure) { mFailure = failure; }
    void add(const CallBegun& call);
    void add(const SourceRead& read);
    void add(const LogLine& line);

    const std::optional<FileOpened>& opened() const { return mOpened; }
    /** By track index. */
    const std::map<uint64_t, PlayedTrack>& tracks() const { return mTracks; }
    const std::optional<Failure>& failure() const { return mFailure; }
    const std::vector<LoggedLine>& lines() const { return mLines; }
    std::optional<int64_t> lastReadOffset() const { return mLastReadOffset; }

    /** Pages that were searched for stream headers. */
    size_t headerPages() const { return mHeaderPages; }
    bool wasHeaderPage(size_t page) const { return mPages[page].searchedForHeader; }
    /** Whether a piece was read for a track, by the piece's index in the file. */
    bool wasRead(size_t piece) const { return mPieces[piece].wasRead; }
    bool said(PieceEvent event, size_t piece) const {
        return (mPieces[piece].events >> static_cast<unsigned>(event) & 1U) != 0;
    }
    /** How often packets were cut out of the page. */
    uint32_t timesCut(size_t page) const { return mPages[page].timesCut; }

    const JunkSearches& junkSearches() const { return mJunkSearches; }

    /** The first line with this beginning. */
    const LoggedLine* line(std::string_view beginning) const;
    /** The first such line that was written at a place from `offset` up to `end`. */
    const LoggedLine* line(std::string_view beginning, uint64_t offset, uint64_t end) const;
    /** All such lines that were written there, in the order of the places. */
    std::vector<const LoggedLine*> linesAt(uint64_t offset, uint64_t end) const;
    /** If several tracks have the number, the last one, which gets the packets. */
    std::optional<uint64_t> trackOf(uint32_t serial) const;

  private:
    struct PageUse {
        bool searchedForHeader = false;
        uint32_t timesCut = 0;
    };

    struct PieceUse {
        bool wasRead = false;
        uint8_t events = 0;
    };

    bool wasOnlySearched(const SourceRead& read) const;
    void notePieceRead(const SourceRead& read);
    void noteEvent(const LogLine& line);
    void noteHeaderRead(const OggPage& page, size_t index, const SourceRead& read);
    void notePayloadRead(const OggPage& page, size_t index, const SourceRead& read);

    const OggFile& mFile;
    const bool mAllLines;
    std::optional<FileOpened> mOpened;
    std::map<uint64_t, PlayedTrack> mTracks;
    std::optional<Failure> mFailure;
    std::vector<LoggedLine> mLines;
    std::unordered_map<std::string, size_t> mLineIndex;
    std::multimap<int64_t, size_t> mLinesByOffset;
    std::vector<PageUse> mPages;
    std::vector<PieceUse> mPieces;
    /** The last one that was read. */
    std::optional<size_t> mPiece;
    bool mPieceIsNew = false;
    JunkSearches mJunkSearches;
    size_t mHeaderPages = 0;
    bool mHeaderSearchOver = false;
    PlayLimit mLimit;
    CallBegun mCall;
    std::optional<int64_t> mOffset;
    std::optional<int64_t> mLastReadOffset;
};

/** Returns the number after `before` in the text; nothing if the text continues otherwise. */
std::optional<int64_t> numberAfter(std::string_view text, std::string_view before);

}  // namespace ogmprobe
