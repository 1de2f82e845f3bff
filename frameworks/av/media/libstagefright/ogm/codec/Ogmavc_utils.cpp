// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "avc_utils"

#include "codec/Ogmavc_utils.h"

#include <log/log.h>
#include <media/stagefright/foundation/ABitReader.h>

#include <algorithm>
#include <iterator>

#include "base/Assert.h"

namespace android::ogm {

namespace {

constexpr size_t kStartCodePrefixSize = kStartCodePrefix.size();
constexpr size_t kStartCodeSize = kStartCodePrefixSize + 1;

constexpr uint32_t kFineGranularityScalable = 0x21;
constexpr uint32_t kExtendedPar = 0x0F;
constexpr uint32_t kRectangular = 0;

// Tags and sizes of the descriptors (ISO/IEC 14496-1, 7.2).
constexpr uint8_t kEsDescriptorTag = 0x03;
constexpr uint8_t kDecoderConfigTag = 0x04;
constexpr uint8_t kDecoderSpecificInfoTag = 0x05;
constexpr size_t kTagAndSize = 3;
constexpr size_t kEsFields = 3;  // ES_ID and flags
constexpr size_t kDecoderFields = 13;
/** The value for audio (ISO/IEC 14496-3). Decoders that get this descriptor accept it for video. */
constexpr uint8_t kObjectType = 0x40;
constexpr size_t kMaxSize14 = 0x3FFF;

/** A marker_bit, which is always 1. */
#define OGM_CHECK_MARKER(bits, line)   \
    OGM_CHECK((bits)->getBits(1) != 0, \
              OGM_SOURCES "Ogmavc_utils:" #line " CHECK(br.getBits(1)) failed.")

void skipVbvParameters(ABitReader* bits) {
    bits->skipBits(15);  // first_half_bit_rate
    OGM_CHECK_MARKER(bits, 560);
    bits->skipBits(15);  // latter_half_bit_rate
    OGM_CHECK_MARKER(bits, 562);
    bits->skipBits(15);  // first_half_vbv_buffer_size
    OGM_CHECK_MARKER(bits, 564);
    bits->skipBits(3);   // latter_half_vbv_buffer_size
    bits->skipBits(11);  // first_half_vbv_occupancy
    OGM_CHECK_MARKER(bits, 567);
    bits->skipBits(15);  // latter_half_vbv_occupancy
    OGM_CHECK_MARKER(bits, 569);
}

/** Everything before video_object_layer_shape. */
void skipLayerType(ABitReader* bits) {
    bits->skipBits(1);  // random_accessible_vol
    const uint32_t objectType = bits->getBits(8);
    OGM_CHECK_VALUES(objectType != kFineGranularityScalable,
                     OGM_SOURCES
                     "Ogmavc_utils:542 "
                     "CHECK_NE( video_object_type_indication,0x21u) failed: ",
                     objectType, kFineGranularityScalable);
    if (bits->getBits(1) != 0) {  // is_object_layer_identifier
        bits->getBits(4);         // video_object_layer_verid
        bits->getBits(3);         // video_object_layer_priority
    }
    if (bits->getBits(4) == kExtendedPar) {  // aspect_ratio_info
        bits->skipBits(8);                   // par_width
        bits->skipBits(8);                   // par_height
    }
    if (bits->getBits(1) != 0) {  // vol_control_parameters
        bits->skipBits(2);        // chroma_format
        bits->skipBits(1);        // low_delay
        if (bits->getBits(1) != 0) {
            skipVbvParameters(bits);
        }
    }
}

/** Bits needed for numbers below `resolution`. */
size_t incrementBits(uint32_t resolution) {
    size_t count = 0;
    for (uint32_t greatest = resolution - 1; greatest > 0; greatest >>= 1) {
        ++count;
    }
    return count;
}

void skipVopRate(ABitReader* bits) {
    const uint32_t resolution = bits->getBits(16);  // vop_time_increment_resolution
    OGM_CHECK_MARKER(bits, 577);
    if (bits->getBits(1) != 0) {  // fixed_vop_rate
        OGM_CHECK_VALUES(resolution > 0,
                         OGM_SOURCES
                         "Ogmavc_utils:589 "
                         "CHECK_GT( vop_time_increment_resolution,0u) failed: ",
                         resolution, 0);
        bits->skipBits(incrementBits(resolution));  // fixed_vop_time_increment
    }
}

}  // namespace

bool ExtractDimensionsFromVOLHeader(ByteView data, int32_t* width, int32_t* height) {
    const ByteView layer = data.from(kStartCodeSize);
    ABitReader bits(layer.data(), layer.size());
    skipLayerType(&bits);
    const uint32_t shape = bits.getBits(2);
    OGM_CHECK_VALUES(shape == kRectangular,
                     OGM_SOURCES
                     "Ogmavc_utils:573 "
                     "CHECK_EQ( video_object_layer_shape,0x00u) failed: ",
                     shape, kRectangular);
    OGM_CHECK_MARKER(&bits, 575);
    skipVopRate(&bits);
    OGM_CHECK_MARKER(&bits, 601);
    *width = static_cast<int32_t>(bits.getBits(13));
    OGM_CHECK_MARKER(&bits, 603);
    *height = static_cast<int32_t>(bits.getBits(13));
    OGM_CHECK_MARKER(&bits, 605);
    bits.getBits(1);  // interlaced
    return true;
}

int64_t GetStartCodeChunkSize(ByteView data) {
    if (data.size() < kStartCodePrefixSize) {
        return kChunkNotEnded;
    }
    OGM_CHECK(data.holds(kStartCodePrefix, 0), OGM_SOURCES "Ogmavc_utils:816 Should not be here. ");
    const std::optional<size_t> next = data.find(kStartCodePrefix, kStartCodePrefixSize);
    return next ? static_cast<int64_t>(*next) : kChunkNotEnded;
}

void WriteSize14(uint8_t** position, size_t size) {
    OGM_CHECK_VALUES(size <= kMaxSize14,
                     OGM_SOURCES "Ogmavc_utils:768 CHECK_LE( size,0x3fff) failed: ", size,
                     kMaxSize14);
    *(*position)++ = static_cast<uint8_t>(size >> 7 | 0x80);
    *(*position)++ = static_cast<uint8_t>(size & 0x7F);
}

sp<ABuffer> MakeESDS(ByteView configuration) {
    const size_t decoderConfigSize = kDecoderFields + kTagAndSize + configuration.size();
    const size_t esSize = kEsFields + kTagAndSize + decoderConfigSize;
    const sp<ABuffer> esds = new ABuffer(kTagAndSize + esSize);
    uint8_t* position = esds->data();
    *position++ = kEsDescriptorTag;
    WriteSize14(&position, esSize);
    position = std::fill_n(position, kEsFields, uint8_t{0});
    *position++ = kDecoderConfigTag;
    WriteSize14(&position, decoderConfigSize);
    *position++ = kObjectType;
    // Stream type, buffer size and bitrates stay 0.
    position = std::fill_n(position, kDecoderFields - 1, uint8_t{0});
    *position++ = kDecoderSpecificInfoTag;
    WriteSize14(&position, configuration.size());
    std::copy_n(configuration.data(), configuration.size(), position);
    return esds;
}

}  // namespace android::ogm
