// SPDX-License-Identifier: Apache-2.0
#include "FrameType.h"

#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "codecs/StartCode.h"

namespace ogmprobe::timeline {
namespace {

using Bytes = std::span<const uint8_t>;

/** Returns the bytes after the next start code prefix, its code first; empty if there is none. */
Bytes afterStartCode(Bytes bytes) {
    const auto prefix = std::search(bytes.begin(), bytes.end(), kStartCodePrefix.begin(),
                                    kStartCodePrefix.end());
    const auto at = static_cast<size_t>(prefix - bytes.begin());
    return bytes.subspan(std::min(bytes.size(), at + kStartCodePrefix.size()));
}

/**
 * Returns the bytes from the first start code for which `isWanted` is true; the code comes first.
 */
template <typename Predicate>
Bytes unitOf(Bytes bytes, Predicate isWanted) {
    Bytes unit = afterStartCode(bytes);
    while (!unit.empty() && !isWanted(unit[0])) {
        unit = afterStartCode(unit);
    }
    return unit;
}

// ISO/IEC 14496-2: vop_coding_type, the two bits after vop_start_code. A sprite is predicted.
FrameType mpeg4Type(Bytes packet) {
    constexpr uint8_t kVopStartCode = 0xb6;
    constexpr std::array kTypes = {FrameType::kIntra, FrameType::kPredicted,
                                   FrameType::kBidirectional, FrameType::kPredicted};
    const Bytes vop = unitOf(packet, [](uint8_t code) { return code == kVopStartCode; });
    return vop.size() < 2 ? FrameType::kUnknown : kTypes[vop[1] >> 6];
}

// ISO/IEC 13818-2: picture_coding_type, three bits after the ten of temporal_reference. A picture
// of DC coefficients (MPEG-1) depends on no other.
FrameType mpeg2Type(Bytes packet) {
    constexpr uint8_t kPictureStartCode = 0x00;
    constexpr std::array kTypes = {FrameType::kUnknown,   FrameType::kIntra,
                                   FrameType::kPredicted, FrameType::kBidirectional,
                                   FrameType::kIntra,     FrameType::kUnknown,
                                   FrameType::kUnknown,   FrameType::kUnknown};
    const Bytes picture = unitOf(packet, [](uint8_t code) { return code == kPictureStartCode; });
    return picture.size() < 3 ? FrameType::kUnknown : kTypes[picture[2] >> 3 & 7];
}

/** Reads Exp-Golomb codes (ISO/IEC 14496-10, 9.1) from the first 64 bits. */
class GolombReader {
  public:
    explicit GolombReader(Bytes bytes) {
        mLeft = std::min<int>(64, static_cast<int>(std::min<size_t>(bytes.size(), 8)) * 8);
        for (int i = 0; i < 8; ++i) {
            mBits = mBits << 8 | (i * 8 < mLeft ? bytes[static_cast<size_t>(i)] : 0);
        }
    }

    std::optional<uint64_t> next() {
        const int zeros = std::countl_zero(mBits);
        const int length = 2 * zeros + 1;
        if (length > mLeft || length >= 64) {
            return std::nullopt;
        }
        const uint64_t code = mBits >> (64 - length);
        mBits <<= length;
        mLeft -= length;
        return code - 1;
    }

  private:
    uint64_t mBits = 0;
    int mLeft = 0;
};

// ISO/IEC 14496-10: slice_type, the second field of a slice's header. Emulation prevention cannot
// come before it: the first field of a picture's first slice is a single 1.
FrameType h264Type(Bytes packet) {
    constexpr std::array kTypes = {FrameType::kPredicted, FrameType::kBidirectional,
                                   FrameType::kIntra, FrameType::kPredicted, FrameType::kIntra};
    const Bytes slice = unitOf(packet, [](uint8_t header) {
        const int type = header & 0x1f;
        return type == 1 || type == 2 || type == 5;
    });
    if (slice.size() < 2) {
        return FrameType::kUnknown;
    }
    GolombReader reader(slice.subspan(1));
    const auto firstMacroblock = reader.next();
    const auto type = reader.next();
    // Types from 5 on also say that all slices of the picture have one type.
    const bool isValid = firstMacroblock && type && *type < 2 * kTypes.size();
    return isValid ? kTypes[*type % kTypes.size()] : FrameType::kUnknown;
}

// RFC 6386, 9.1: the lowest bit of the frame tag is 0 in key frames, which continue with a start
// code.
FrameType vp8Type(Bytes packet) {
    constexpr size_t kTagSize = 3;
    constexpr std::array<uint8_t, 3> kStartCode = {0x9d, 0x01, 0x2a};
    if (packet.size() < kTagSize) {
        return FrameType::kUnknown;
    }
    if ((packet[0] & 1) != 0) {
        return FrameType::kPredicted;
    }
    const Bytes afterTag = packet.subspan(kTagSize);
    const bool isKey = afterTag.size() >= kStartCode.size() &&
                       std::equal(kStartCode.begin(), kStartCode.end(), afterTag.begin());
    return isKey ? FrameType::kIntra : FrameType::kUnknown;
}

FrameType jpegType(Bytes packet) {
    const bool isImage = packet.size() >= 2 && packet[0] == 0xff && packet[1] == 0xd8;
    return isImage ? FrameType::kIntra : FrameType::kUnknown;
}

constexpr std::string_view kVp8 = "video/x-vnd.on2.vp8";

struct TypeReader {
    std::string_view mime;
    FrameType (*typeOf)(Bytes);
};

constexpr std::array kReaders = {
        TypeReader{"video/mp4v-es", mpeg4Type},      TypeReader{"video/divx4", mpeg4Type},
        TypeReader{"video/divx", mpeg4Type},         TypeReader{"video/mpeg2", mpeg2Type},
        TypeReader{"video/avc", h264Type},           TypeReader{kVp8, vp8Type},
        TypeReader{"video/x-motion-jpeg", jpegType},
};

}  // namespace

FrameType frameTypeOf(std::string_view mime, std::span<const uint8_t> packet) {
    const auto* reader = std::find_if(kReaders.begin(), kReaders.end(),
                                      [mime](const TypeReader& row) { return row.mime == mime; });
    return reader == kReaders.end() ? FrameType::kUnknown : reader->typeOf(packet);
}

std::span<const char* const, kFrameTypes> typeNames(std::string_view mime) {
    static constexpr std::array<const char*, kFrameTypes> kPictures = {"I picture", "P picture",
                                                                       "B picture", ""};
    static constexpr std::array<const char*, kFrameTypes> kFrames = {"key frame", "inter frame", "",
                                                                     ""};
    return mime == kVp8 ? kFrames : kPictures;
}

char letterOf(FrameType type) {
    constexpr std::array<char, kFrameTypes> kLetters = {'I', 'P', 'B', 'U'};
    return kLetters[static_cast<size_t>(type)];
}

}  // namespace ogmprobe::timeline
