// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "compare/PlayedFile.h"

namespace ogmprobe {

/**
 * Returns what a device returned for a file, from the lines that `ogmdump` wrote there. A failure
 * on the device, or a missing end of the dump, becomes the played file's failure. Throws
 * `ProbeError` with `kFile` if the file is not such a dump or is one with seeks.
 */
PlayedFile readDeviceDump(const std::string& path);

/**
 * Removes everything that a device's public interface does not return: the container's format,
 * unknown entries of formats and buffers, and why a track ends. Of an ESDS only the decoder's
 * configuration stays.
 */
void reduceToPublicInterface(PlayedFile& file);

}  // namespace ogmprobe
