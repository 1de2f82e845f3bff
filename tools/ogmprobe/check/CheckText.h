// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "check/CheckedFile.h"

namespace ogmprobe::check {

/** The full result of a file, over several lines. */
std::string fullText(const CheckedFile& file, const std::string& decoders, bool color);

/** "film.ogm: plays with faults: frames-lost, negative-times" */
std::string lineText(const CheckedFile& file, bool color);

inline constexpr const char* kCsvHeading =
        "file,verdict,track,kind,mime,format,decoder,severity,reason,value,limit,text\n";

/** A line for each reason, and one for each track without. */
std::string csvText(const CheckedFile& file);

/** "note", "fault", "fatal", or "error" where no verdict could be found. */
std::string_view severityOf(const Reason& reason);

/** "track 0, video, MPEG-4 Part 2, 176x144, 25 fps" */
std::string titleOf(const CheckedTrack& track);

/** The names of all reasons for a verdict, each once, the worst first. */
std::vector<std::string> namesOfReasons(const CheckedFile& file);

}  // namespace ogmprobe::check
