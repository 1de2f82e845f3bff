// SPDX-License-Identifier: Apache-2.0

/** Splitting of MPEG-4 headers into chunks; the input is put after a start code prefix. */

#include "Ends.h"
#include "InputReader.h"
#include "codec/Ogmavc_utils.h"

using namespace android;
using namespace android::ogm::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Bytes bytes(ogm::kStartCodePrefix.begin(), ogm::kStartCodePrefix.end());
    bytes.insert(bytes.end(), data, data + size);
    // Each chunk is parsed from a separate heap block.
    size_t position = 0;
    while (position < bytes.size()) {
        const ExactBlock rest(bytes.data() + position, bytes.size() - position);
        const int64_t chunkSize = ogm::GetStartCodeChunkSize(rest.view());
        if (chunkSize == ogm::kChunkNotEnded) {
            return 0;
        }
        require(chunkSize >= 3 && static_cast<size_t>(chunkSize) + 3 <= rest.size(),
                "the size of a chunk");
        const auto chunk = static_cast<size_t>(chunkSize);
        require(rest.view().holds(ogm::kStartCodePrefix, chunk), "a chunk ends elsewhere");
        for (size_t i = 3; i < chunk; ++i) {
            require(!rest.view().holds(ogm::kStartCodePrefix, i), "a chunk holds a start code");
        }
        position += chunk;
    }
    return 0;
}
