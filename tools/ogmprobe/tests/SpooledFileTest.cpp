// SPDX-License-Identifier: Apache-2.0
#include "files/SpooledFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <optional>

#include "ExitCode.h"

namespace ogmprobe {
namespace {

/** The reading end of a pipe that has five bytes. */
Descriptor pipeOfFive() {
    std::array<int, 2> ends = {-1, -1};
    EXPECT_EQ(pipe(ends.data()), 0);
    EXPECT_EQ(write(ends[1], "12345", 5), 5);
    close(ends[1]);
    return Descriptor(ends[0]);
}

TEST(SpooledFile, HasAllOfThePipeAndGoesWithItsObject) {
    std::optional<SpooledFile> file;
    file.emplace(pipeOfFive().get(), "a pipe", 5);
    const std::string path = file->path();
    EXPECT_EQ(std::filesystem::file_size(path), 5U);
    file.reset();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(SpooledFile, RefusesMoreThanTheLimit) {
    try {
        SpooledFile file(pipeOfFive().get(), "a pipe", 4);
        FAIL();
    } catch (const ProbeError& error) {
        EXPECT_EQ(error.code(), ExitCode::kFile);
        EXPECT_STREQ(error.what(), "a pipe has more than 4 B: save it in a file");
    }
}

}  // namespace
}  // namespace ogmprobe
