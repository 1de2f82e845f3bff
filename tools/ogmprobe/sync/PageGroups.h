// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "explain/OggFile.h"
#include "ledger/LedgerBuild.h"
#include "sync/PageGroup.h"

namespace ogmprobe {

/**
 * Groups the units of the stream, without comments, by the pages on which their packets end. The
 * granule position of a page is that of the last packet that ends there (RFC 3533, section 6).
 */
std::vector<PageGroup> pageGroupsOf(const OggFile& file, const StreamAccount& account);

}  // namespace ogmprobe
