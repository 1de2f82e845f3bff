// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "page/PageReader.h"
#include "stream/StreamTable.h"

namespace android::ogm {

enum class LogicStreamType { kUnknown, kVideo, kAudio };

/** Whether the granule positions of a stream type count frames or samples. */
LogicStreamType getLogicStrmType(uint32_t streamType);

/** The latest time on the pages at the end of the file, in us; 0 if there is none. */
int64_t parseMaxTime(const PageReader& pages, const StreamTable& streams);

}  // namespace android::ogm
