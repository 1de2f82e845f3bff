// SPDX-License-Identifier: Apache-2.0

/** The coding type of a video packet, which is the whole input. */

#include "Ends.h"
#include "InputReader.h"
#include "codec/FrameType.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

/** The bytes after the first start code 00 00 01 `code` that is not at the end; empty for none. */
ogm::ByteView afterStartCode(ogm::ByteView packet, uint8_t code) {
    for (size_t i = 0; i + 4 < packet.size(); ++i) {
        if (packet.u32be(i) == (0x100U | code)) {
            return packet.from(i + 4);
        }
    }
    return {};
}

int32_t plainMpeg4Type(ogm::ByteView packet) {
    const ogm::ByteView vop = afterStartCode(packet, 0xB6);
    const unsigned codingType = vop[0] >> 6;
    return vop.empty() || codingType == 3 ? 0 : static_cast<int32_t>(codingType) + 1;
}

int32_t plainMpegType(ogm::ByteView packet) {
    const ogm::ByteView picture = afterStartCode(packet, 0x00);
    const unsigned codingType = picture[1] >> 3 & 7U;
    return picture.empty() || codingType > 3 ? 0 : static_cast<int32_t>(codingType);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ExactBlock packet(data, size);
    require(ogm::mpeg4FrameType(packet.view()) == plainMpeg4Type(packet.view()),
            "the type of an MPEG-4 picture");
    require(ogm::mpegFrameType(packet.view()) == plainMpegType(packet.view()),
            "the type of an MPEG-1 or MPEG-2 picture");
    return 0;
}
