// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

namespace android::log {

/** The tag that stands for a null one. It outlives a change of the default while it is held. */
std::shared_ptr<const std::string> defaultTag();

}  // namespace android::log
