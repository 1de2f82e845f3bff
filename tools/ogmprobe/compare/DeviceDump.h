// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "compare/PlayedFile.h"

namespace ogmprobe {

/**
 * What a device handed out of a file, from the lines that `ogmdump` wrote there. What went wrong on
 * the device is the played file's failure, a missing end included. Throws `ProbeError` with `kFile`
 * for what is no such dump, or one with seeks.
 */
PlayedFile readDeviceDump(const std::string& path);

/**
 * Leaves of what this program got of a file only what the public interface of a device hands out
 * too: neither the container's format nor entries of formats and buffers that are not known by
 * name, of an ESDS the decoder's configuration, and not why a track ends.
 */
void reduceToPublicInterface(PlayedFile& file);

}  // namespace ogmprobe
