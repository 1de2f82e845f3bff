// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ogmprobe {

struct Comment {
    /** As in the file; names are compared without case. */
    std::string name;
    std::string value;
};

/** A Vorbis comment header, which describes a stream. */
struct Comments {
    std::string vendor;
    std::vector<Comment> entries;
};

/**
 * Returns the readable part of a packet that begins with its type byte and "vorbis"; nothing for
 * other packets.
 */
std::optional<Comments> parseComments(std::span<const uint8_t> packet);

/** A chapter of a film. */
struct Chapter {
    int64_t timeUs = 0;
    std::string name;
};

/**
 * Returns the chapters of the entries CHAPTER01, CHAPTER01NAME and so on, in the order of their
 * times.
 */
std::vector<Chapter> chaptersOf(const Comments& comments);
/** Returns whether the entry is one of those. */
bool isChapter(const Comment& comment);

}  // namespace ogmprobe
