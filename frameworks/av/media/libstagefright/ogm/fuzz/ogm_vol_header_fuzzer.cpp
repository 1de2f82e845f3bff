// SPDX-License-Identifier: Apache-2.0

/** The header of an MPEG-4 video object layer with its start code, which is the whole input. */

#include "Ends.h"
#include "InputReader.h"
#include "codec/Ogmavc_utils.h"

using namespace android;
using namespace android::ogm::fuzz;

namespace {

constexpr int32_t kSizeLimit = 1 << 13;
constexpr size_t kEsdsHeaderSize = 25;

void run(ogm::ByteView layer) {
    int32_t width = -1;
    int32_t height = -1;
    require(ogm::ExtractDimensionsFromVOLHeader(layer, &width, &height), "a header is refused");
    require(width >= 0 && width < kSizeLimit && height >= 0 && height < kSizeLimit,
            "the size of a picture has 13 bits");
    const sp<ABuffer> esds = ogm::MakeESDS(layer);
    require(esds->size() == kEsdsHeaderSize + layer.size(), "the size of a descriptor");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ExactBlock layer(data, size);
    (void)endsByItself([&] { run(layer.view()); });
    return 0;
}
