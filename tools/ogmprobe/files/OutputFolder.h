// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace ogmprobe {

/** Makes the folder if it does not exist. Throws `ProbeError` with `kFile`. */
void makeFolder(const std::filesystem::path& folder);

/** Names the output files of several input files in one folder. */
class OutputStems {
  public:
    /**
     * Returns the input file's name without folder and suffix. Throws `ProbeError` with `kUsage` if
     * an earlier file has the same one, so that no output overwrites another's.
     */
    std::string take(const std::string& file);

  private:
    std::map<std::string, std::string> mFileOf;
};

}  // namespace ogmprobe
