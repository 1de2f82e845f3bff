// SPDX-License-Identifier: Apache-2.0
#include "audio/AccessUnitCutter.h"

#include "audio/Ac3Cutter.h"
#include "audio/DtsCutter.h"
#include "audio/MpegAudioCutter.h"
#include "stream/StreamTypes.h"

namespace android::ogm {

std::unique_ptr<AccessUnitCutter> makeAccessUnitCutter(uint32_t streamType) {
    switch (streamType) {
        case OGA_AUDIO_MP3:
            return std::make_unique<MpegAudioCutter>();
        case OGA_AUDIO_AC3:
            return std::make_unique<Ac3Cutter>();
        case OGA_AUDIO_DTS:
            return std::make_unique<DtsCutter>();
        default:
            // MPEG audio layers I and II included: their packets are returned unchanged.
            return nullptr;
    }
}

bool appendAudioData(const AccessUnitCutter& cutter, ElementaryStream* stream, ByteBuffer* bytes,
                     int64_t timeUs) {
    if (stream->empty()) {
        const std::optional<size_t> start = cutter.findFirstSync(bytes->view());
        if (!start) {
            return false;
        }
        bytes->dropFront(*start);
    }
    stream->append(bytes, timeUs);
    return true;
}

}  // namespace android::ogm
