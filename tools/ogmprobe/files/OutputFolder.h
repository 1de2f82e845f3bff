// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace ogmprobe {

/** Makes the folder if need be. Throws `ProbeError` with `kFile`. */
void makeFolder(const std::filesystem::path& folder);

/** Names what is written into one folder for several input files. */
class OutputStems {
  public:
    /**
     * The input file's name without folder and suffix. Throws `ProbeError` with `kUsage` where an
     * earlier file has the same one, so that none overwrites what was written for another.
     */
    std::string take(const std::string& file);

  private:
    std::map<std::string, std::string> mFileOf;
};

}  // namespace ogmprobe
