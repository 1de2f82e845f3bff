// SPDX-License-Identifier: Apache-2.0
#include "explain/PluginTrace.h"
#include "explain/LogTexts.h"

#include <android/log.h>
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "codecs/CommentHeader.h"
#include "text/LogText.h"

namespace ogmprobe {
namespace {

/** The plug-in reads a page's header in two steps: this much, then the lacing table. */
constexpr uint64_t kPageHeaderRead = 27;

// No page is read this often, not even if one track waits for another.
constexpr uint32_t kCircles = 16;

constexpr std::array<std::pair<std::string_view, PieceEvent>, 7> kEvents = {{
        {log_text::kGranuleFell, PieceEvent::kGranuleFell},
        {log_text::kPieceTooShort, PieceEvent::kTooShort},
        {log_text::kNoSync, PieceEvent::kNoSync},
        {log_text::kFrameConfirmed, PieceEvent::kFrameConfirmed},
        {log_text::kNoFrameConfirmed, PieceEvent::kNoFrameConfirmed},
        {log_text::kNoMatchingFrame, PieceEvent::kNoMatchingFrame},
        {log_text::kFrameWithoutSize, PieceEvent::kFrameWithoutSize},
}};

bool isNotable(const LogLine& line) {
    return line.priority >= ANDROID_LOG_WARN ||
           std::any_of(
                   log_text::kNotableLines.begin(), log_text::kNotableLines.end(),
                   [&](std::string_view beginning) { return line.text.starts_with(beginning); });
}

}  // namespace

PluginTrace::PluginTrace(const OggFile& file, bool allLines)
    : mFile(file),
      mAllLines(allLines),
      mPages(file.pages().size()),
      mPieces(file.pieces().size()),
      mJunkSearches(file),
      mLimit(file.size()) {}

void PluginTrace::add(const PacketPlayed& played) {
    PlayedTrack& track = mTracks[played.track];
    if (track.buffers.empty()) {
        track.beginsWithComment = isCommentHeader(played.packet.bytes);
    }
    track.buffers.push_back({Fingerprint(played.packet.bytes), played.packet.timeUs});
    mLimit.add(played.packet);
}

void PluginTrace::add(const TrackEnded& ended) {
    PlayedTrack& track = mTracks[ended.track];
    track.ended = true;
    track.failure = ended.failure;
}

void PluginTrace::add(const CallBegun& call) {
    mCall = call;
    mOffset.reset();
    mPiece.reset();
}

void PluginTrace::add(const SourceRead& read) {
    if (wasOnlySearched(read)) {
        mPieces[*mPiece].wasRead = false;
    }
    mOffset = read.lastOffset();
    mLastReadOffset = read.lastOffset();
    mPiece.reset();
    if (mCall.function == PluginFunction::kRead) {
        mJunkSearches.add(read);
    }
    // Byte-by-byte reads are a search for a page; known pages are read in another way.
    if (read.count > 1) {
        return;
    }
    if (mCall.function == PluginFunction::kRead) {
        notePieceRead(read);
    }
    const auto index = mFile.pageAt(read.offset);
    if (!index) {
        return;
    }
    const OggPage& page = mFile.pages()[*index];
    if (mCall.function == PluginFunction::kCreate) {
        noteHeaderRead(page, *index, read);
    } else if (mCall.function == PluginFunction::kRead) {
        notePayloadRead(page, *index, read);
    }
}

/**
 * Returns whether the previous read was not a piece of a packet but part of a search, which
 * continued one byte further and reached the end of the file.
 */
bool PluginTrace::wasOnlySearched(const SourceRead& read) const {
    return mPiece && mPieceIsNew && mOffset && read.offset == *mOffset + 1 &&
           read.size == mFile.pieces()[*mPiece].size &&
           read.result < static_cast<int64_t>(read.size);
}

void PluginTrace::notePieceRead(const SourceRead& read) {
    mPiece = mFile.pieceAt(read.offset, read.size);
    if (!mPiece) {
        return;
    }
    // Empty packets begin at the same offset.
    const auto& pieces = mFile.pieces();
    while (pieces[*mPiece].size == 0 && mPieces[*mPiece].wasRead && *mPiece + 1 < pieces.size() &&
           pieces[*mPiece + 1].size == 0 && pieces[*mPiece + 1].offset == pieces[*mPiece].offset) {
        ++*mPiece;
    }
    mPieceIsNew = !mPieces[*mPiece].wasRead;
    mPieces[*mPiece].wasRead = true;
}

void PluginTrace::noteHeaderRead(const OggPage& page, size_t index, const SourceRead& read) {
    PageUse& use = mPages[index];
    if (!mHeaderSearchOver && !use.searchedForHeader && read.size == kPageHeaderRead &&
        static_cast<uint64_t>(read.offset) == page.offset) {
        use.searchedForHeader = true;
        ++mHeaderPages;
    }
}

// The size distinguishes it from a search for a page, which reads byte by byte.
void PluginTrace::notePayloadRead(const OggPage& page, size_t index, const SourceRead& read) {
    if (static_cast<uint64_t>(read.offset) != page.bodyOffset() ||
        read.size != page.firstPieceSize) {
        return;
    }
    if (++mPages[index].timesCut > kCircles) {
        throw EndlessRepetition(
                fmt::format("it returns to the page at offset {} without end", page.offset));
    }
}

void PluginTrace::add(const LogLine& line) {
    if (line.text.starts_with(log_text::kDurationSearch)) {
        mHeaderSearchOver = true;
    }
    if (const auto serial = numberAfter(line.text, log_text::kSerialOfTrack);
        serial && mCall.track) {
        mTracks[*mCall.track].serial = static_cast<uint32_t>(*serial);
    }
    for (const std::string_view beginning :
         {log_text::kTypeOfVideoTrack, log_text::kTypeOfAudioTrack}) {
        if (const auto type = numberAfter(line.text, beginning); type && mCall.track) {
            mTracks[*mCall.track].streamType = type;
        }
    }
    noteEvent(line);
    if (!mAllLines && !isNotable(line)) {
        return;
    }
    const auto page = mOffset ? mFile.pageAt(*mOffset) : std::nullopt;
    // A repeated line, as for each packet of a page, is one entry.
    const int64_t place = page ? static_cast<int64_t>(*page) : -1;
    const std::string key =
            fmt::format("{} {} {}", static_cast<int>(mCall.function), place, line.text);
    const auto [entry, isNew] = mLineIndex.emplace(key, mLines.size());
    if (isNew) {
        mLines.push_back(
                {line.priority, line.tag, withoutLineEnd(line.text), mCall.function, mOffset, 0});
        if (mOffset) {
            mLinesByOffset.emplace(*mOffset, entry->second);
        }
    }
    ++mLines[entry->second].count;
}

void PluginTrace::noteEvent(const LogLine& line) {
    if (!mPiece) {
        return;
    }
    for (const auto& [beginning, event] : kEvents) {
        if (line.text.starts_with(beginning)) {
            mPieces[*mPiece].events |= static_cast<uint8_t>(1U << static_cast<unsigned>(event));
        }
    }
}

const LoggedLine* PluginTrace::line(std::string_view beginning) const {
    const auto found = std::find_if(mLines.begin(), mLines.end(), [&](const LoggedLine& line) {
        return line.text.starts_with(beginning);
    });
    return found == mLines.end() ? nullptr : &*found;
}

const LoggedLine* PluginTrace::line(std::string_view beginning, uint64_t offset,
                                    uint64_t end) const {
    for (const LoggedLine* line : linesAt(offset, end)) {
        if (line->text.starts_with(beginning)) {
            return line;
        }
    }
    return nullptr;
}

std::vector<const LoggedLine*> PluginTrace::linesAt(uint64_t offset, uint64_t end) const {
    std::vector<const LoggedLine*> lines;
    const auto last = mLinesByOffset.lower_bound(static_cast<int64_t>(end));
    for (auto entry = mLinesByOffset.lower_bound(static_cast<int64_t>(offset)); entry != last;
         ++entry) {
        lines.push_back(&mLines[entry->second]);
    }
    return lines;
}

std::optional<uint64_t> PluginTrace::trackOf(uint32_t serial) const {
    std::optional<uint64_t> last;
    for (const auto& [index, track] : mTracks) {
        if (track.serial == serial) {
            last = index;
        }
    }
    return last;
}

std::optional<int64_t> numberAfter(std::string_view text, std::string_view before) {
    if (!text.starts_with(before)) {
        return std::nullopt;
    }
    text.remove_prefix(before.size());
    int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace ogmprobe
