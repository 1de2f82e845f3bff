// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmFuzzer"

#include "CutterComparison.h"

#include <optional>

#include "CutterDriver.h"
#include "Ends.h"
#include "stream/StreamTypes.h"

namespace android::ogm::fuzz {

namespace {

using test::AccessUnit;
using test::CutterDriver;
using test::ReferenceCutter;

constexpr uint8_t kNegativeTimes = 0x80;

uint32_t streamTypeOf(ReferenceCutter::Codec codec) {
    switch (codec) {
        case ReferenceCutter::Codec::kMpegAudio:
            return OGA_AUDIO_MP3;
        case ReferenceCutter::Codec::kAc3:
            return OGA_AUDIO_AC3;
        case ReferenceCutter::Codec::kDts:
            return OGA_AUDIO_DTS;
    }
    return OGM_TYPE_UNKNOWN;
}

/** Cuts all units that can be cut; expects exactly these units and this end. */
void cutAll(CutterDriver* cutter, const ReferenceCutter::Outcome& expected) {
    for (const AccessUnit& unit : expected.units) {
        const std::optional<AccessUnit> cut = cutter->next();
        require(cut.has_value(), "an access unit is missing");
        require(*cut == unit, "an access unit or its time differs");
    }
    if (expected.fatal) {
        // An assertion, or an empty unit that is found again and again.
        const std::optional<AccessUnit> cut = cutter->next();
        require(cut && cut->bytes.empty(), "the process should have ended");
        throw IntendedEnd{};
    }
    require(!cutter->next(), "there is an access unit too many");
}

}  // namespace

void cutAndCompare(ReferenceCutter::Codec codec, InputReader input) {
    CutterDriver cutter(streamTypeOf(codec));
    ReferenceCutter reference(codec);
    const size_t fixedSize = input.u8();
    const uint8_t times = input.u8();
    int64_t timeUs = 0;
    while (!input.empty()) {
        const size_t size = fixedSize != 0 ? fixedSize : input.u16();
        const Bytes piece = bytesOf(input.bytes(size));
        timeUs += (times & kNegativeTimes) != 0 ? -int64_t{times} : int64_t{times};
        const ReferenceCutter::Outcome expected = reference.feed(piece, timeUs);
        const bool accepted = cutter.append(piece, timeUs);
        require(accepted == expected.accepted, "whether a piece is taken");
        if (accepted) {
            cutAll(&cutter, expected);
        }
    }
}

}  // namespace android::ogm::fuzz
