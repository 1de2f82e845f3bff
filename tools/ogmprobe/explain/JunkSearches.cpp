// SPDX-License-Identifier: Apache-2.0
#include "explain/JunkSearches.h"

#include <algorithm>

namespace ogmprobe {
namespace {

/** What a search reads at each byte. */
constexpr uint64_t kSearched = 4;

bool isWithinPageAfter(const OggFile& file, const JunkRange& junk, uint64_t offset) {
    const auto page = file.pageAt(static_cast<int64_t>(offset));
    return page && file.pages()[*page].offset == junk.end() && offset > junk.end();
}

}  // namespace

void JunkSearches::add(const SourceRead& read) {
    if (read.size != kSearched || read.result != static_cast<int64_t>(kSearched) ||
        read.offset <= 0) {
        return;
    }
    const auto& junk = mFile.junk();
    const auto begin = static_cast<uint64_t>(read.offset);
    const auto after = std::partition_point(
            junk.begin(), junk.end(), [begin](const auto& range) { return range.offset < begin; });
    if (after == junk.begin()) {
        return;
    }
    const auto& range = *std::prev(after);
    // A single read of four bytes is that of a packet, not a search.
    const bool isSearch = read.count > 1 || !mFile.pieceAt(read.offset, kSearched);
    if (isSearch && (begin < range.end() || isWithinPageAfter(mFile, range, begin))) {
        Cost& cost = mCosts[static_cast<size_t>(std::prev(after) - junk.begin())];
        ++cost.searches;
        cost.reads += read.count;
    }
}

}  // namespace ogmprobe
