// SPDX-License-Identifier: Apache-2.0
#include "audio/Pcm.h"

namespace android::ogm {

namespace {

constexpr size_t kBytes24 = 3;
constexpr size_t kBytes16 = 2;

/** Half the range: silence in unsigned samples. */
constexpr uint8_t kUnsignedBias = 0x80;

}  // namespace

size_t narrowPcm24(uint8_t* samples, size_t size) {
    const size_t count = size / kBytes24;
    for (size_t i = 0; i < count; ++i) {
        samples[i * kBytes16] = samples[i * kBytes24 + 1];
        samples[i * kBytes16 + 1] = samples[i * kBytes24 + 2];
    }
    return count * kBytes16;
}

void widenPcm8(ByteView samples, uint8_t* output) {
    for (size_t i = 0; i < samples.size(); ++i) {
        output[i * kBytes16] = 0;
        output[i * kBytes16 + 1] = samples[i] ^ kUnsignedBias;
    }
}

}  // namespace android::ogm
