// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace ogmdump {

/** The same as ogmprobe's. */
enum ExitCode { kDone = 0, kUsage = 1, kFile = 2, kNotTaken = 3 };

struct DumpOptions {
    std::string path;
    /** Empty: reads from the beginning. */
    std::vector<int64_t> seeksUs;
    /** Maximum number of samples of each track after each seek. */
    uint64_t count = UINT64_MAX;
};

/** Writes what the device's extractor returns for the file, one JSON object per line. */
ExitCode dump(const DumpOptions& options, FILE* out);

}  // namespace ogmdump
