// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "check/CheckedFile.h"

namespace ogmprobe::check {

/** A file with one track, which has these reasons. */
inline CheckedFile checkedFile(const std::string& path, const std::vector<Reason>& ofTrack = {},
                               const std::vector<Reason>& ofFile = {}) {
    CheckedFile file;
    file.path = path;
    file.sizeBytes = 1'500'000;
    file.durationUs = 61'000'000;
    file.reasons = ofFile;
    CheckedTrack track;
    track.index = 0;
    track.serial = 7;
    track.kind = "audio";
    track.codec = "AC-3";
    track.mime = "audio/ac3";
    track.format = "44100 Hz, 2 channels";
    track.decoder = "c2.maker.ac3.decoder";
    track.inFile = 100;
    track.returned = 69;
    track.reasons = ofTrack;
    file.tracks.push_back(track);
    return file;
}

}  // namespace ogmprobe::check
