// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "check/Decoder.h"

namespace ogmprobe::check {

/**
 * Returns the decoders of these files and of the files that they include. A sandboxed process reads
 * the XML. Throws `ProbeError` with `kFile` and a sentence that names the file.
 */
DecoderList decodersOfFiles(const std::vector<std::string>& paths);

}  // namespace ogmprobe::check
