// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Bytes.h"

namespace android::ogm::test {

/** The path that the plug-in appends delivered audio to when its dump is switched on. */
inline constexpr char kAudioDumpPath[] = "/data/bs_dump_OGM_AUDIO.bin";

/**
 * While it lives, an `fopen` of the dump path by anyone in this process opens a temporary file
 * instead, or fails. The program must export its dynamic symbols, so that the plug-in's `fopen` is
 * the one of this library. One at a time.
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
