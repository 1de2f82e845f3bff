// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmFuzzer"

#include "CutterDriver.h"

#include <memory>
#include <utility>

#include "Ends.h"
#include "OgmExtractor.h"
#include "ScriptedSource.h"

namespace android::ogm::fuzz {

namespace {

using test::AccessUnit;
using test::ReferenceCutter;

constexpr uint32_t kSerialNo = 1;
constexpr uint16_t kBitsPerSample = 16;
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

AccessUnit unitOf(const android::AccessUnit& cut) {
    AccessUnit unit;
    unit.bytes = bytesOf(cut.bytes.view());
    if (cut.timeUs >= 0) {
        unit.timeUs = cut.timeUs;
    }
    return unit;
}

/** Cuts what can be cut and expects just these units, and that the cutting ends as they say. */
void cutAll(OgmTrack* track, const ReferenceCutter::Outcome& expected) {
    for (const AccessUnit& unit : expected.units) {
        const auto cut = track->dequeueAccessUnit();
        require(cut.has_value(), "an access unit is missing");
        require(unitOf(*cut) == unit, "an access unit or its time differs");
    }
    if (expected.fatal) {
        // An assertion, or a unit of no bytes that is found again for ever.
        const auto cut = track->dequeueAccessUnit();
        require(cut && cut->bytes.empty(), "the process should have ended");
        throw DemandedEnd{};
    }
    require(!track->dequeueAccessUnit(), "there is an access unit too many");
}

}  // namespace

void cutAndCompare(ReferenceCutter::Codec codec, InputReader input) {
    const SessionInput empty;
    ScriptedSource source(empty, empty.file);
    OgmExtractor extractor(std::make_unique<DataSourceHelper>(source.table()));
    OgmTrack track(&extractor, kSerialNo, streamTypeOf(codec), kBitsPerSample);
    ReferenceCutter reference(codec);
    const size_t fixedSize = input.u8();
    const uint8_t times = input.u8();
    int64_t timeUs = 0;
    while (!input.empty()) {
        const size_t size = fixedSize != 0 ? fixedSize : input.u16();
        ByteBuffer piece(input.bytes(size));
        timeUs += (times & kNegativeTimes) != 0 ? -int64_t{times} : int64_t{times};
        const ReferenceCutter::Outcome expected = reference.feed(bytesOf(piece.view()), timeUs);
        const bool accepted = track.appendAudioData(&piece, timeUs) == AMEDIA_OK;
        require(accepted == expected.accepted, "whether a piece is taken");
        if (accepted) {
            cutAll(&track, expected);
        }
    }
}

}  // namespace android::ogm::fuzz
