// SPDX-License-Identifier: Apache-2.0
#include "sync/UnitLength.h"

namespace ogmprobe {
namespace {

constexpr const char* kPcm = "0001";

/** No unit lasts longer, so the sum over a page cannot overflow. */
constexpr uint64_t kMaxStated = UINT32_MAX;

std::optional<int64_t> lengthOfFrame(const AudioFrame& frame) {
    if (frame.addsToFrameBefore) {
        return 0;
    }
    return frame.samples == 0 ? std::nullopt : std::optional<int64_t>(frame.samples);
}

std::optional<int64_t> lengthOfPcm(const FileUnit& unit, const StreamHeader& header) {
    const uint64_t bytesPerSample = uint64_t{header.channels} * header.bitsPerSample / 8;
    if (bytesPerSample == 0 || unit.contentSize % bytesPerSample != 0) {
        return std::nullopt;
    }
    return static_cast<int64_t>(unit.contentSize / bytesPerSample);
}

}  // namespace

std::optional<int64_t> lengthOf(const FileUnit& unit, const UnitKind& kind,
                                const StreamHeader& header) {
    if (kind.framing) {
        return lengthOfFrame(unit.frame);
    }
    if (unit.statedLength && *unit.statedLength <= kMaxStated) {
        return static_cast<int64_t>(*unit.statedLength);
    }
    if (header.kind == StreamKind::kVideo) {
        return 1;
    }
    return header.kind == StreamKind::kAudio && header.codec == kPcm ? lengthOfPcm(unit, header)
                                                                     : std::nullopt;
}

}  // namespace ogmprobe
