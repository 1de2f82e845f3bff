// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>

/**
 * The program brings its own log, properties, media formats and fopen. A plug-in that it loads
 * binds to these in place of those of the libraries that it names, so each of its calls is
 * recorded.
 */
namespace android::ogm::trace {

/** The properties that a plug-in sees; all others have no value. */
void setProperties(std::map<std::string, std::string> properties);

/** Whether files below /data can be opened; what is written there is recorded and lost. */
void setDataFolderOpen(bool open);

}  // namespace android::ogm::trace
