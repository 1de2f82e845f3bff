// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ogmprobe {

/** The decoder configuration descriptor (tag 4) of ISO/IEC 14496-1. */
struct DecoderConfig {
    uint8_t objectTypeIndication = 0;
    uint8_t streamType = 0;
    bool upStream = false;
    uint32_t bufferSizeDb = 0;
    uint32_t maxBitrate = 0;
    uint32_t avgBitrate = 0;
    /** The payload of the decoder specific info (tag 5), if there is one. */
    std::optional<std::vector<uint8_t>> decoderSpecificInfo;
};

/** The parts of an elementary stream descriptor (tag 3) of ISO/IEC 14496-1 that players use. */
struct EsDescriptor {
    /** All tags in their order, including nested ones. */
    std::vector<uint8_t> tags;
    uint16_t esId = 0;
    uint8_t flags = 0;
    std::optional<DecoderConfig> decoderConfig;
};

/** Returns nothing if a descriptor exceeds its parent, or if the first one has another tag. */
std::optional<EsDescriptor> parseEsDescriptor(std::span<const uint8_t> bytes);

/** Returns the meaning of an object type indication: "MPEG-4 audio" for 0x40. */
std::string objectTypeName(uint8_t objectTypeIndication);

}  // namespace ogmprobe
