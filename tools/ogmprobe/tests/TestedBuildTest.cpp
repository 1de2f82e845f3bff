// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "Process.h"

namespace ogmprobe::test::tested_build_test {
namespace {

/** Sets all variables that name a build to their own names. */
class NamedBuild {
  public:
    NamedBuild() {
        for (const char* name : kNames) {
            setenv(name, name, 1);
        }
    }
    ~NamedBuild() {
        for (const char* name : kNames) {
            unsetenv(name);
        }
    }

  private:
    static constexpr const char* kNames[] = {"TESTED_PROGRAM",    "TESTED_FAKE_PLUGIN",
                                             "TESTED_OWN_PLUGIN", "TESTED_OTHER_LIBRARY",
                                             "TESTED_EMULATOR",   "TESTED_SANITIZER"};
};

TEST(TestedBuild, IsTheOneThatTheEnvironmentNames) {
    const NamedBuild named;
    const TestedBuild build = buildFromEnvironment();
    EXPECT_EQ(build.program, "TESTED_PROGRAM");
    EXPECT_EQ(build.fakePlugin, "TESTED_FAKE_PLUGIN");
    EXPECT_EQ(build.ownPlugin, "TESTED_OWN_PLUGIN");
    EXPECT_EQ(build.otherLibrary, "TESTED_OTHER_LIBRARY");
    EXPECT_EQ(build.emulator, "TESTED_EMULATOR");
    EXPECT_EQ(build.sanitizer, "TESTED_SANITIZER");
    EXPECT_TRUE(build.isEmulated());
    EXPECT_TRUE(build.isSanitized());
}

TEST(TestedBuild, IsTheProgramsOwnUnlessOneIsNamed) {
    const TestedBuild build = buildFromEnvironment();
    for (const std::string& file :
         {build.program, build.fakePlugin, build.ownPlugin, build.otherLibrary}) {
        EXPECT_TRUE(std::filesystem::is_regular_file(file)) << file;
    }
}

}  // namespace
}  // namespace ogmprobe::test::tested_build_test
