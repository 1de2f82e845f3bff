// SPDX-License-Identifier: Apache-2.0
#include "codecs/Esds.h"

#include <algorithm>
#include <array>

namespace ogmprobe {
namespace {

// Descriptor tags of ISO/IEC 14496-1, table 1.
constexpr uint8_t kEsDescriptorTag = 0x03;
constexpr uint8_t kDecoderConfigTag = 0x04;
constexpr uint8_t kDecoderSpecificInfoTag = 0x05;

// Bits of the byte after the ES_ID.
constexpr uint8_t kStreamDependenceFlag = 0x80;
constexpr uint8_t kUrlFlag = 0x40;
constexpr uint8_t kOcrStreamFlag = 0x20;

constexpr size_t kMaxSizeBytes = 4;

using Bytes = std::span<const uint8_t>;

/** Removes values from the beginning. An incomplete value makes the reader bad permanently. */
class Reader {
  public:
    explicit Reader(Bytes bytes) : mRest(bytes) {}

    bool good() const { return mGood; }
    bool empty() const { return mRest.empty(); }

    Bytes take(size_t size) {
        if (size > mRest.size()) {
            mGood = false;
            mRest = {};
            return {};
        }
        const Bytes taken = mRest.first(size);
        mRest = mRest.subspan(size);
        return taken;
    }

    /** Most significant byte first. */
    uint32_t number(size_t size) {
        uint32_t value = 0;
        for (const uint8_t byte : take(size)) {
            value = value << 8 | byte;
        }
        return value;
    }

    /** Seven bits per byte; the top bit says that another byte follows. */
    uint32_t expandableSize() {
        uint32_t size = 0;
        for (size_t i = 0; i < kMaxSizeBytes; ++i) {
            const uint32_t byte = number(1);
            size = size << 7 | (byte & 0x7f);
            if ((byte & 0x80) == 0) {
                return size;
            }
        }
        mGood = false;
        return 0;
    }

  private:
    Bytes mRest;
    bool mGood = true;
};

struct TaggedDescriptor {
    uint8_t tag;
    Bytes payload;
};

TaggedDescriptor takeDescriptor(Reader& reader) {
    const auto tag = static_cast<uint8_t>(reader.number(1));
    const uint32_t size = reader.expandableSize();
    return {tag, reader.take(size)};
}

bool parseDecoderConfig(Bytes payload, EsDescriptor& es) {
    Reader reader(payload);
    DecoderConfig config;
    config.objectTypeIndication = static_cast<uint8_t>(reader.number(1));
    const uint32_t typeAndDirection = reader.number(1);
    config.streamType = static_cast<uint8_t>(typeAndDirection >> 2);
    config.upStream = (typeAndDirection & 2) != 0;
    config.bufferSizeDb = reader.number(3);
    config.maxBitrate = reader.number(4);
    config.avgBitrate = reader.number(4);
    while (reader.good() && !reader.empty()) {
        const TaggedDescriptor inner = takeDescriptor(reader);
        es.tags.push_back(inner.tag);
        if (inner.tag == kDecoderSpecificInfoTag) {
            config.decoderSpecificInfo.emplace(inner.payload.begin(), inner.payload.end());
        }
    }
    es.decoderConfig = std::move(config);
    return reader.good();
}

void skipOptionalFields(Reader& reader, uint8_t flags) {
    if ((flags & kStreamDependenceFlag) != 0) {
        reader.take(2);
    }
    if ((flags & kUrlFlag) != 0) {
        reader.take(reader.number(1));
    }
    if ((flags & kOcrStreamFlag) != 0) {
        reader.take(2);
    }
}

}  // namespace

std::optional<EsDescriptor> parseEsDescriptor(Bytes bytes) {
    Reader outer(bytes);
    const TaggedDescriptor first = takeDescriptor(outer);
    if (!outer.good() || first.tag != kEsDescriptorTag) {
        return std::nullopt;
    }
    EsDescriptor es;
    es.tags.push_back(first.tag);
    Reader reader(first.payload);
    es.esId = static_cast<uint16_t>(reader.number(2));
    es.flags = static_cast<uint8_t>(reader.number(1));
    skipOptionalFields(reader, es.flags);
    while (reader.good() && !reader.empty()) {
        const TaggedDescriptor inner = takeDescriptor(reader);
        es.tags.push_back(inner.tag);
        if (inner.tag == kDecoderConfigTag && !parseDecoderConfig(inner.payload, es)) {
            return std::nullopt;
        }
    }
    return reader.good() ? std::optional(std::move(es)) : std::nullopt;
}

std::string objectTypeName(uint8_t objectTypeIndication) {
    struct Row {
        uint8_t value;
        const char* name;
    };
    // ISO/IEC 14496-1, table 5.
    static constexpr std::array kNames = {
            Row{0x20, "MPEG-4 Part 2 video"}, Row{0x21, "H.264"},        Row{0x40, "MPEG-4 audio"},
            Row{0x60, "MPEG-2 video"},        Row{0x61, "MPEG-2 video"}, Row{0x69, "MPEG-2 audio"},
            Row{0x6a, "MPEG-1 video"},        Row{0x6b, "MPEG-1 audio"}, Row{0x6c, "JPEG"},
    };
    const auto* row = std::find_if(kNames.begin(), kNames.end(), [&](const Row& candidate) {
        return candidate.value == objectTypeIndication;
    });
    return row != kNames.end() ? row->name : "unknown";
}

}  // namespace ogmprobe
