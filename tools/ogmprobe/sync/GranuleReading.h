// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "sync/PageGroup.h"

namespace ogmprobe {

/**
 * What a page's granule position is of the last packet that ends on the page. RFC 3533 means the
 * end, what there is up to and with that packet; common writers of OGM files write where it begins.
 */
enum class GranuleReading { kUnknown, kEnd, kBeginning };

/** "end", "beginning" or "unknown". */
const char* readingName(GranuleReading reading);

/**
 * How the stream was written: the distances of granule positions fit the lengths of what lies in
 * between by one reading and not by the other. Where all lengths are equal only the first page
 * tells.
 */
GranuleReading readingOf(const std::vector<PageGroup>& groups);

}  // namespace ogmprobe
