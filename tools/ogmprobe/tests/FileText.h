// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

namespace ogmprobe::test {

/** A file's bytes; none if it cannot be opened. Copies blocks, as tests are not optimised. */
inline std::string fileText(const std::filesystem::path& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return std::move(text).str();
}

}  // namespace ogmprobe::test
