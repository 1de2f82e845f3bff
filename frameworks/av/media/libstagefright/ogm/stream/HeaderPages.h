// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "page/PageReader.h"
#include "stream/StreamTable.h"

namespace android::ogm {

/**
 * Reads the pages at the start of a file and adds the streams that they announce. Returns the
 * offset of the first page that does not begin a stream, or of the junk before it; 0 if there is
 * none. Damage leads to fewer streams, never to a failure.
 */
int64_t parseHeaderPages(const PageReader& pages, StreamTable* streams);

}  // namespace android::ogm
