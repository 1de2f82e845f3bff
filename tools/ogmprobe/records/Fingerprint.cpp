// SPDX-License-Identifier: Apache-2.0
#include "records/Fingerprint.h"

#include <algorithm>

#include "records/Digest.h"

namespace ogmprobe {

Fingerprint::Fingerprint(std::span<const uint8_t> bytes)
    : size(bytes.size()), digest(fnv1a64(bytes)) {
    std::copy_n(bytes.begin(), std::min(bytes.size(), kBeginning), beginning.begin());
}

bool Fingerprint::hasSameBeginning(const Fingerprint& other) const {
    constexpr uint64_t kEnough = 4;
    const uint64_t common = std::min({size, other.size, uint64_t{kBeginning}});
    return common >= kEnough &&
           std::equal(beginning.begin(), beginning.begin() + static_cast<ptrdiff_t>(common),
                      other.beginning.begin());
}

}  // namespace ogmprobe
