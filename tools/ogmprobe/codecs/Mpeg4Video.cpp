// SPDX-License-Identifier: Apache-2.0
#include "codecs/Mpeg4Video.h"

#include <algorithm>
#include <bit>

#include "codecs/BitReader.h"
#include "codecs/StartCode.h"

namespace ogmprobe {
namespace {

constexpr uint8_t kFirstLayerCode = 0x20;
constexpr uint8_t kLastLayerCode = 0x2f;
constexpr uint8_t kPictureCode = 0xb6;

}  // namespace

std::span<const uint8_t> videoObjectLayer(std::span<const uint8_t> stream) {
    auto from = stream.begin();
    while (true) {
        const auto prefix =
                std::search(from, stream.end(), kStartCodePrefix.begin(), kStartCodePrefix.end());
        if (stream.end() - prefix <= static_cast<ptrdiff_t>(kStartCodePrefix.size())) {
            return {};
        }
        from = prefix + kStartCodePrefix.size();
        if (*from == kPictureCode) {
            return {};
        }
        if (*from >= kFirstLayerCode && *from <= kLastLayerCode) {
            return stream.subspan(static_cast<size_t>(prefix - stream.begin()));
        }
    }
}

std::optional<PictureSize> pictureSize(std::span<const uint8_t> stream) {
    constexpr uint32_t kExtendedAspect = 15;
    const auto layer = videoObjectLayer(stream);
    if (layer.size() <= kStartCodePrefix.size() + 1) {
        return std::nullopt;
    }
    BitReader bits(layer.subspan(kStartCodePrefix.size() + 1));
    bits.skip(1 + 8);  // random_accessible_vol, video_object_type_indication
    const bool hasVersion = bits.take(1) != 0;
    bits.skip(hasVersion ? 4 + 3 : 0);
    bits.skip(bits.take(4) == kExtendedAspect ? 8 + 8 : 0);
    if (bits.take(1) != 0) {  // vol_control_parameters
        bits.skip(2 + 1);     // chroma_format, low_delay
        const bool hasBuffer = bits.take(1) != 0;
        bits.skip(hasBuffer ? 79 : 0);  // vbv_parameters
    }
    const bool isRectangular = bits.take(2) == 0;
    bits.skip(1);
    const uint32_t resolution = bits.take(16);
    bits.skip(1);
    const bool hasFixedRate = bits.take(1) != 0;
    bits.skip(hasFixedRate ? std::max(1U, static_cast<unsigned>(std::bit_width(resolution - 1)))
                           : 0);
    bits.skip(1);
    const uint32_t width = bits.take(13);
    bits.skip(1);
    const uint32_t height = bits.take(13);
    if (!isRectangular || resolution == 0 || bits.isPastEnd()) {
        return std::nullopt;
    }
    return PictureSize{static_cast<int32_t>(width), static_cast<int32_t>(height)};
}

}  // namespace ogmprobe
