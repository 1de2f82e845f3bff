// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/Decoder.h"
#include "check/Reason.h"

namespace ogmprobe::check {

/** What a track needs from a decoder; nothing for unknown values. */
struct Needs {
    std::string mime;
    std::optional<int32_t> width;
    std::optional<int32_t> height;
    std::optional<int32_t> frameRate;
    std::optional<int32_t> sampleRate;
    std::optional<int32_t> channelCount;
    /** Bits per second. */
    std::optional<double> bitrate;
    /** From the headers inside the stream; empty if unknown. */
    std::string profile = {};
};

struct DecoderChoice {
    /** Empty: there is none for the MIME type. */
    std::string name;
    /** What the track needs beyond what the decoder declares. */
    std::vector<Reason> reasons;
};

/**
 * Returns the decoder that fits best, the first one if several do. The reasons include needs that
 * no decoder declares.
 */
DecoderChoice chooseDecoder(const Needs& needs, const DecoderList& list);

}  // namespace ogmprobe::check
