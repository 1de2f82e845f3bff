// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace android::log {

/**
 * Returns the tag that replaces a null one. It stays valid while held, even if the default changes.
 */
std::shared_ptr<const std::string> defaultTag();

}  // namespace android::log
