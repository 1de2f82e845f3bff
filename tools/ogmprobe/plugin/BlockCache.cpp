// SPDX-License-Identifier: Apache-2.0
#include "plugin/BlockCache.h"

#include <algorithm>
#include <optional>

namespace ogmprobe {

bool BlockCache::load(uint64_t offset) {
    const uint64_t number = offset / kBlockSize;
    const uint64_t start = number * kBlockSize;
    Block& block = mBlocks[number % kBlocks];
    if (block.bytes == nullptr) {
        // Not value-initialised: bytes that were not read are never used.
        block.bytes.reset(new uint8_t[kBlockSize]);
    }
    const std::optional<size_t> got = mFile.read(start, {block.bytes.get(), kBlockSize});
    block.number = kNoBlock;
    if (got != std::min<uint64_t>(kBlockSize, mFile.sizeFrom(start))) {
        return false;
    }
    block.size = *got;
    block.number = number;
    return true;
}

}  // namespace ogmprobe
