// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "files/ReadableFile.h"

namespace ogmprobe {

/**
 * Caches the last blocks of a file, so that a byte-by-byte search needs no system call for each
 * byte. A mapping would do the same, but would end the process if the file shrinks.
 */
class BlockCache {
  public:
    static constexpr size_t kBlockSize = size_t{1} << 16;

    /** The file must outlive this object. */
    explicit BlockCache(const ReadableFile& file) : mFile(file) {}

    /** Returns the cached bytes from the offset to the end of its block; may be empty. */
    std::span<const uint8_t> from(uint64_t offset) const {
        const uint64_t number = offset / kBlockSize;
        const Block& block = mBlocks[number % kBlocks];
        const size_t start = offset % kBlockSize;
        if (block.number != number || start >= block.size) {
            return {};
        }
        return {block.bytes.get() + start, block.size - start};
    }

    /** Reads the block with the byte. Returns false if it cannot be read completely. */
    bool load(uint64_t offset);

  private:
    static constexpr size_t kBlocks = 16;
    static constexpr uint64_t kNoBlock = ~uint64_t{0};

    struct Block {
        uint64_t number = kNoBlock;
        size_t size = 0;
        std::unique_ptr<uint8_t[]> bytes;
    };

    const ReadableFile& mFile;
    std::array<Block, kBlocks> mBlocks;
};

}  // namespace ogmprobe
