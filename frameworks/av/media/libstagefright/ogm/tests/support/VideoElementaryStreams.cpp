// SPDX-License-Identifier: Apache-2.0
#include "BitWriter.h"
#include "ElementaryStreams.h"

namespace android::ogm::test {
namespace {

Bytes startCodeOf(uint8_t code) {
    return {0x00, 0x00, 0x01, code};
}

Bytes filledUp(Bytes unit, size_t size, uint32_t seed) {
    if (unit.size() < size) {
        append(unit, pattern(size - unit.size(), seed));
    }
    return unit;
}

/** How many bits are needed to write `value`. */
size_t bitsFor(uint32_t value) {
    size_t bits = 0;
    for (; value > 0; value >>= 1) {
        ++bits;
    }
    return bits;
}

/** Writes the marker bits of a header; one of them may be cleared. */
class Markers {
  public:
    Markers(BitWriter& writer, std::optional<size_t> cleared)
        : mWriter(writer), mCleared(cleared) {}

    void put() { mWriter.put(mCleared == mNext++ ? 0 : 1, 1); }

  private:
    BitWriter& mWriter;
    std::optional<size_t> mCleared;
    size_t mNext = 0;
};

void putVbvParameters(BitWriter& writer, Markers& markers) {
    writer.put(100, 15);  // first_half_bit_rate
    markers.put();
    writer.put(200, 15);  // latter_half_bit_rate
    markers.put();
    writer.put(300, 15);  // first_half_vbv_buffer_size
    markers.put();
    writer.put(5, 3);     // latter_half_vbv_buffer_size
    writer.put(600, 11);  // first_half_vbv_occupancy
    markers.put();
    writer.put(700, 15);  // latter_half_vbv_occupancy
    markers.put();
}

}  // namespace

Bytes VideoObjectLayer::bytes() const {
    BitWriter writer;
    Markers markers(writer, clearMarker);
    writer.put(0, 1).put(objectType, 8).put(verId ? 1 : 0, 1);
    if (verId) {
        writer.put(*verId, 4).put(1, 3);
    }
    writer.put(aspectRatio, 4);
    if (aspectRatio == 15) {
        writer.put(12, 8).put(11, 8);
    }
    writer.put(controlParameters ? 1 : 0, 1);
    if (controlParameters) {
        writer.put(1, 2).put(0, 1).put(vbvParameters ? 1 : 0, 1);
        if (vbvParameters) {
            putVbvParameters(writer, markers);
        }
    }
    writer.put(shape, 2);
    markers.put();
    writer.put(timeIncrementResolution, 16);
    markers.put();
    writer.put(fixedVopRate ? 1 : 0, 1);
    if (fixedVopRate && timeIncrementResolution > 0) {
        writer.put(0, bitsFor(timeIncrementResolution - 1));
    }
    markers.put();
    writer.put(width, 13);
    markers.put();
    writer.put(height, 13);
    markers.put();
    writer.put(0, 1);                      // interlaced
    writer.put(1, 1).put(0, 1).put(0, 1);  // OBMC off, no sprite, 8-bit samples
    writer.put(0, 1).put(1, 1).put(1, 1).put(0, 2);
    return joined({startCodeOf(startCode), writer.bytes()});
}

Bytes visualObjectSequence() {
    return joined({startCodeOf(0xB0), {0x01}});
}

Bytes visualObject() {
    return joined({startCodeOf(0xB5), {0x09}});
}

Bytes videoObjectPlane(uint32_t codingType, size_t size, uint32_t seed) {
    const auto first = static_cast<uint8_t>(codingType << 6 | 0x10);
    return filledUp(joined({startCodeOf(0xB6), {first}}), size, seed);
}

Bytes groupOfVop() {
    return joined({startCodeOf(0xB3), {0x04, 0x20, 0x07}});
}

Bytes mpeg2Picture(uint32_t codingType, size_t size, uint32_t seed) {
    // 10 bits of temporal reference, then the coding type and the first bits of the VBV delay.
    const auto second = static_cast<uint8_t>(codingType << 3 | 0x07);
    return filledUp(joined({startCodeOf(0x00), {0x00, second}}), size, seed);
}

}  // namespace android::ogm::test
