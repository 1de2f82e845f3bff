// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ogmprobe {

struct Comment {
    /** As the file spells it; names are the same whatever their case. */
    std::string name;
    std::string value;
};

/** A Vorbis comment header: what a muxer and its user say about a stream. */
struct Comments {
    std::string vendor;
    std::vector<Comment> entries;
};

/** What can be read of a packet that begins with its type byte and "vorbis"; nothing of others. */
std::optional<Comments> parseComments(std::span<const uint8_t> packet);

/** In the order of its time. */
struct Chapter {
    int64_t timeUs = 0;
    std::string name;
};

/** Of the entries CHAPTER01, CHAPTER01NAME and so on. */
std::vector<Chapter> chaptersOf(const Comments& comments);
/** Whether the entry is one of those. */
bool isChapter(const Comment& comment);

}  // namespace ogmprobe
