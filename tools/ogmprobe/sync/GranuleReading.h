// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "sync/PageGroup.h"

namespace ogmprobe {

/**
 * Whether a page's granule position is the end or the beginning of the last packet that ends on the
 * page. RFC 3533 says the end; common writers of OGM files write the beginning.
 */
enum class GranuleReading { kUnknown, kEnd, kBeginning };

/** "end", "beginning" or "unknown". */
const char* readingName(GranuleReading reading);

/**
 * Finds out how the stream was written: the distances of granule positions match the lengths of the
 * packets between them for only one reading. If all lengths are equal, only the first page shows
 * it.
 */
GranuleReading readingOf(const std::vector<PageGroup>& groups);

}  // namespace ogmprobe
