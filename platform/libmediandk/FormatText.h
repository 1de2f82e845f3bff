// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "FormatEntries.h"

namespace android::mediandk {

/**
 * Returns all entries as "name: type(value)", separated by ", ", with a closing brace at the end.
 */
std::string toText(const FormatEntries& entries);

}  // namespace android::mediandk
