// SPDX-License-Identifier: Apache-2.0
#include "plugin/BlockCache.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace ogmprobe {
namespace {

/** Reads up to an error or the end of the file. */
size_t readBlock(int descriptor, uint64_t offset, uint8_t* bytes, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t got =
                pread64(descriptor, bytes + done, size - done, static_cast<off64_t>(offset + done));
        if (got > 0) {
            done += static_cast<size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

}  // namespace

BlockCache::BlockCache(int descriptor, uint64_t size) : mDescriptor(descriptor), mSize(size) {}

bool BlockCache::load(uint64_t offset) {
    const uint64_t number = offset / kBlockSize;
    const uint64_t start = number * kBlockSize;
    Block& block = mBlocks[number % kBlocks];
    if (block.bytes == nullptr) {
        // Not value-initialised: bytes that were not read are never used.
        block.bytes.reset(new uint8_t[kBlockSize]);
    }
    const size_t expected = std::min<uint64_t>(kBlockSize, mSize - std::min(start, mSize));
    block.number = kNoBlock;
    block.size = readBlock(mDescriptor, start, block.bytes.get(), expected);
    if (block.size < expected) {
        return false;
    }
    block.number = number;
    return true;
}

}  // namespace ogmprobe
