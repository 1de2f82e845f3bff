// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "check/Decoder.h"

/**
 * Reads the lists of codecs that a device has (media_codecs*.xml). The XML comes from anywhere, so
 * this runs in a sandbox; document types, and with them all entities, are refused.
 */
namespace ogmprobe::check {

/** Deeper files and elements are none of a list of codecs. */
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
 * The decoders of these files, which are read in that order, each with what it includes at the
 * place where it does. As long as files are missing, the decoders are not all there.
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
