// SPDX-License-Identifier: Apache-2.0

/**
 * Runs a fuzz target, without a fuzz engine, on the given files and on all files in the given
 * folders. Exits with 0 if all have been run, and there was at least one.
 */

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;

/** Sorted, so that the order does not depend on the file system; empty if the folder is missing. */
std::set<fs::path> filesIn(const fs::path& path) {
    if (fs::is_regular_file(path)) {
        return {path};
    }
    if (!fs::exists(path)) {
        return {};
    }
    std::set<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.insert(entry.path());
        }
    }
    return files;
}

bool run(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        std::fprintf(stderr, "cannot open %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    (void)LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    size_t runs = 0;
    for (int i = 1; i < count; ++i) {
        for (const fs::path& path : filesIn(arguments[i])) {
            // Printed before the run, so that the last name is that of the file that ends the
            // process.
            std::fprintf(stderr, "%s\n", path.c_str());
            if (!run(path)) {
                return 1;
            }
            ++runs;
        }
    }
    std::printf("%zu inputs\n", runs);
    return runs == 0 ? 1 : 0;
}
