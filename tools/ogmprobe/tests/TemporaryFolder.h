// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "FileText.h"

namespace ogmprobe::test {

/** A test's own folder, removed with this object. */
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "ogmprobe.XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        mPath = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(mPath); }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return mPath; }
    std::string path(const std::string& name) const { return (mPath / name).string(); }

    /** Returns the new file's path. */
    std::string write(const std::string& name, const std::string& contents) const {
        std::ofstream(mPath / name, std::ios::binary) << contents;
        return path(name);
    }
    std::string read(const std::string& name) const { return fileText(mPath / name); }

  private:
    std::filesystem::path mPath;
};

}  // namespace ogmprobe::test
