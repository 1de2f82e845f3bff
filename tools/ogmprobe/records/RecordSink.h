// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

#include "records/Records.h"

namespace ogmprobe {

/** Receives the records one by one. */
using RecordSink = std::function<void(const Record&)>;

}  // namespace ogmprobe
