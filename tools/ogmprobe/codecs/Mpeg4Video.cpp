// SPDX-License-Identifier: Apache-2.0
#include "codecs/Mpeg4Video.h"

#include <algorithm>
#include <array>

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

}  // namespace ogmprobe
