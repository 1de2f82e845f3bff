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
inline constexpr size_t kMostXmlDepth = 32;
inline constexpr size_t kMostIncludeDepth = 8;
inline constexpr size_t kMostXmlFiles = 64;
inline constexpr size_t kMostXmlBytes = size_t{1} << 20;
inline constexpr size_t kMostDecoders = 4096;

/** Contents by their paths. */
using XmlFiles = std::map<std::string, std::string>;

/** A file that is included and was not among those given. */
struct MissingXml {
    std::string path;
    std::string includedBy;
};

struct CodecXml {
    std::vector<Decoder> decoders;
    std::vector<MissingXml> missing;
    /** What is wrong, with file and line; empty if nothing is. */
    std::string error;
};

/**
 * Returns the decoders of these files, which are read in that order, each with its included files
 * at their places. While files are missing, the decoders are incomplete.
 */
CodecXml readCodecXml(const std::vector<std::string>& paths, const XmlFiles& files);

/**
 * The path of a file that another includes: beside it or in a folder below. Empty for a name that
 * leads elsewhere or does not end in ".xml".
 */
std::string includedPath(const std::string& path, std::string_view href);

/** Whether the other one can be such a file. */
bool canInclude(const std::string& path, const std::string& included);

/** "8000,11025-48000" or "1-384000"; nothing that can be read gives nothing. */
Ranges parseRanges(std::string_view text);

}  // namespace ogmprobe::check
