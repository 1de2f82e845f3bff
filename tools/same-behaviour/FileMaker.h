// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Bytes.h"
#include "Random.h"

namespace android::ogm::trace {

using test::Bytes;

enum class FileSize {
    kSmall,
    /** Long enough for its duration to be found, and for seeks to land in the middle. */
    kScanned,
    /** One stream has megabytes, another little. */
    kLongQueue,
};

/** Returns a file of random streams, pages and granule positions. */
Bytes randomFile(Random* random, FileSize size);

/**
 * Returns the file with page fields changed, and bytes overwritten, removed, inserted, moved or cut
 * off.
 */
Bytes damagedFile(Random* random, Bytes file);

}  // namespace android::ogm::trace
