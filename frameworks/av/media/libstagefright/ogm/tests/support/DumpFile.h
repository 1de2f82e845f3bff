// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Bytes.h"

namespace android::ogm::test {

/** The path of the plug-in's audio dump. */
inline constexpr char kAudioDumpPath[] = "/data/bs_dump_OGM_AUDIO.bin";

/**
 * During its lifetime each `fopen` of the dump path in this process opens a temporary file instead,
 * or fails. The program must export its dynamic symbols, so that the plug-in calls the `fopen` of
 * this library. One at a time.
 */
class DumpFile {
  public:
    enum class Opening { kSucceeds, kFails };

    explicit DumpFile(Opening opening = Opening::kSucceeds);
    ~DumpFile();
    DumpFile(const DumpFile&) = delete;
    DumpFile& operator=(const DumpFile&) = delete;

    /** What has been written so far. */
    Bytes contents() const;
    /** The mode of each opening so far. */
    std::vector<std::string> modes() const;
};

}  // namespace android::ogm::test
