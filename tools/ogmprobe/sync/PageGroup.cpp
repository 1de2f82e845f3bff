// SPDX-License-Identifier: Apache-2.0
#include "sync/PageGroup.h"

namespace ogmprobe {

std::optional<int64_t> PageGroup::lengthOf(size_t from, size_t end) const {
    int64_t sum = 0;
    for (size_t i = from; i < end; ++i) {
        if (!units[i].length) {
            return std::nullopt;
        }
        sum += *units[i].length;
    }
    return sum;
}

}  // namespace ogmprobe
