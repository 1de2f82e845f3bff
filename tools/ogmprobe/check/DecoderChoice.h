// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/Decoder.h"
#include "check/Reason.h"

namespace ogmprobe::check {

/** What a track asks of a decoder; nothing where the track does not say. */
struct Needs {
    std::string mime;
    std::optional<int32_t> width;
    std::optional<int32_t> height;
    std::optional<int32_t> frameRate;
    std::optional<int32_t> sampleRate;
    std::optional<int32_t> channelCount;
    /** Bits a second. */
    std::optional<double> bitrate;
    /** As headers inside the stream say; empty: they do not. */
    std::string profile = {};
};

struct DecoderChoice {
    /** Empty: there is none for the MIME type. */
    std::string name;
    /** What the track asks beyond what the decoder declares. */
    std::vector<Reason> reasons;
};

/** The decoder that fits best, the first of several; what none can do is among the reasons. */
DecoderChoice chooseDecoder(const Needs& needs, const DecoderList& list);

}  // namespace ogmprobe::check
