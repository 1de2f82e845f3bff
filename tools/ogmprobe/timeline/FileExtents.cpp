// SPDX-License-Identifier: Apache-2.0
#include "FileExtents.h"

#include <algorithm>
#include <iterator>

namespace ogmprobe::timeline {

void FileExtents::add(uint64_t offset, uint64_t size) {
    uint64_t begin = offset;
    uint64_t end = offset + size;
    auto next = mParts.upper_bound(begin);
    if (next != mParts.begin() && std::prev(next)->second >= begin) {
        --next;
    }
    while (next != mParts.end() && next->first <= end) {
        begin = std::min(begin, next->first);
        end = std::max(end, next->second);
        next = mParts.erase(next);
    }
    mParts.emplace(begin, end);
}

}  // namespace ogmprobe::timeline
