// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "check/Decoder.h"

namespace ogmprobe::check {

/**
 * The decoders of these files and of those that they include. Their XML is read by a process that
 * can do nothing else. Throws `ProbeError` with `kFile`, and a sentence that names the file.
 */
DecoderList decodersOfFiles(const std::vector<std::string>& paths);

}  // namespace ogmprobe::check
