// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "page/PageReader.h"
#include "stream/StreamTable.h"

namespace android::ogm {

/**
 * Reads the pages at the start of a file and adds the streams that are announced there.
 * Returns the offset of the first page that begins no stream, or of the junk before it; 0 when
 * there is none. A damaged file gives fewer streams, never a failure.
 */
int64_t parseHeaderPages(const PageReader& pages, StreamTable* streams);

}  // namespace android::ogm
