// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "ledger/StreamUnits.h"

namespace ogmprobe {

/** Which of a track's buffers has which unit of the file. */
struct Delivery {
    /** For each unit. */
    struct Unit {
        std::optional<size_t> buffer;
        /** The buffer begins like the unit, but is not the same. */
        bool isChanged = false;

        bool operator==(const Unit&) const = default;
    };

    std::vector<Unit> units;
    /** Indices of buffers with a unit that was returned before. */
    std::vector<size_t> repeated;
    /** Indices of buffers that match no unit of the file. */
    std::vector<size_t> foreign;
};

/**
 * Compares expected and returned buffers by their bytes, in order. Units that are known to be lost
 * are left out.
 */
Delivery deliveryOf(const std::vector<FileUnit>& units, const std::vector<Fingerprint>& buffers);

}  // namespace ogmprobe
