// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "check/Decoder.h"

/**
 * Reads a device's lists of codecs (media_codecs*.xml). The XML is untrusted, so this runs in a
 * sandbox. Document types, and with them all entities, are refused.
 */
namespace ogmprobe::check {

/** Limits that no list of codecs exceeds. */
inline constexpr size_t kMaxXmlDepth = 32;
inline constexpr size_t kMaxIncludeDepth = 8;
inline constexpr size_t kMaxXmlFiles = 64;
inline constexpr size_t kMaxXmlBytes = size_t{1} << 20;
inline constexpr size_t kMaxDecoders = 4096;

/** Contents by their paths. */
using XmlFiles = std::map<std::string, std::string>;

/** An included file that was not given. */
struct MissingXml {
    std::string path;
    std::string includedBy;
};

struct CodecXml {
    std::vector<Decoder> decoders;
    std::vector<MissingXml> missing;
    /** The error, with file and line; empty if there is none. */
    std::string error;
};

/**
 * Returns the decoders of these files. They are read in this order; included files are read where
 * they are included. While files are missing, the decoders are incomplete.
 */
CodecXml readCodecXml(const std::vector<std::string>& paths, const XmlFiles& files);

/**
 * The path of an included file, which must be in the folder of the including file or below. Empty
 * for other places and for names that do not end in ".xml".
 */
std::string includedPath(const std::string& path, std::string_view href);

/** Whether the other path can be that of an included file. */
bool canInclude(const std::string& path, const std::string& included);

/** Reads "8000,11025-48000" or "1-384000"; empty if the text has no ranges. */
Ranges parseRanges(std::string_view text);

}  // namespace ogmprobe::check
