// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>

/**
 * The program has its own log, properties, media formats and fopen. A plug-in that it loads uses
 * these instead of those in the plug-in's libraries, so each call is recorded.
 */
namespace android::ogm::trace {

/** Sets the properties that a plug-in sees; all others have no value. */
void setProperties(std::map<std::string, std::string> properties);

/**
 * Sets whether files below /data can be opened. What is written there is recorded, then discarded.
 */
void setDataFolderOpen(bool open);

}  // namespace android::ogm::trace
