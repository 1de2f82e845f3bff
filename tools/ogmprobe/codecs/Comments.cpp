// SPDX-License-Identifier: Apache-2.0
#include "codecs/Comments.h"

#include <strings.h>

#include <algorithm>
#include <map>
#include <string_view>

#include "codecs/Fields.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

constexpr std::string_view kCommentPacketStart = "\3vorbis";
constexpr std::string_view kChapter = "CHAPTER";
constexpr std::string_view kName = "NAME";
constexpr size_t kCommentLengthSize = 4;

/** Removes a text and its length, which comes first; the text may be cut off. */
std::optional<std::string> takeCommentText(std::span<const uint8_t>& rest) {
    if (rest.size() < kCommentLengthSize) {
        return std::nullopt;
    }
    const auto length = static_cast<size_t>(numberAt(rest, 0, kCommentLengthSize));
    rest = rest.subspan(kCommentLengthSize);
    const auto text = rest.first(std::min(length, rest.size()));
    rest = rest.subspan(text.size());
    return std::string(text.begin(), text.end());
}

bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() &&
           strncasecmp(text.data(), beginning.data(), beginning.size()) == 0;
}

/** The digits of a chapter, and whether the entry is its name; nothing for other entries. */
struct ChapterEntry {
    std::string number;
    bool isName = false;
};

std::optional<ChapterEntry> chapterEntry(const std::string& name) {
    if (!beginsWith(name, kChapter)) {
        return std::nullopt;
    }
    const std::string_view rest = std::string_view(name).substr(kChapter.size());
    const size_t digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    const std::string_view afterDigits = rest.substr(digits);
    const bool isName = afterDigits.size() == kName.size() && beginsWith(afterDigits, kName);
    if (digits == 0 || (!afterDigits.empty() && !isName)) {
        return std::nullopt;
    }
    return ChapterEntry{std::string(rest.substr(0, digits)), isName};
}

}  // namespace

std::optional<Comments> parseComments(std::span<const uint8_t> packet) {
    if (!holdsAt(packet, 0, kCommentPacketStart)) {
        return std::nullopt;
    }
    auto rest = packet.subspan(kCommentPacketStart.size());
    Comments comments;
    comments.vendor = takeCommentText(rest).value_or("");
    if (rest.size() < kCommentLengthSize) {
        return comments;
    }
    rest = rest.subspan(kCommentLengthSize);
    while (const auto text = takeCommentText(rest)) {
        const size_t equals = text->find('=');
        if (equals != std::string::npos) {
            comments.entries.push_back({text->substr(0, equals), text->substr(equals + 1)});
        }
    }
    return comments;
}

std::vector<Chapter> chaptersOf(const Comments& comments) {
    std::map<std::string, Chapter> byNumber;
    for (const Comment& comment : comments.entries) {
        const auto entry = chapterEntry(comment.name);
        if (entry && entry->isName) {
            byNumber[entry->number].name = comment.value;
        } else if (entry) {
            byNumber[entry->number].timeUs = parseTime(comment.value).value_or(0);
        }
    }
    std::vector<Chapter> chapters;
    chapters.reserve(byNumber.size());
    for (auto& [number, chapter] : byNumber) {
        chapters.push_back(std::move(chapter));
    }
    std::stable_sort(chapters.begin(), chapters.end(),
                     [](const Chapter& a, const Chapter& b) { return a.timeUs < b.timeUs; });
    return chapters;
}

bool isChapter(const Comment& comment) {
    return chapterEntry(comment.name).has_value();
}

}  // namespace ogmprobe
