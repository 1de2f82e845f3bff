// SPDX-License-Identifier: Apache-2.0
#include "check/TriageState.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "CheckedFiles.h"
#include "TemporaryFolder.h"

namespace ogmprobe::check {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class TriageStateTest : public testing::Test {
  protected:
    std::string path() const { return (mFolder.path() / "state").string(); }
    std::string text() const { return mFolder.read("state"); }
    /** The message of the exception that opening it throws. */
    std::string refusal(const std::string& circumstances) const {
        return refusalOf(path(), circumstances);
    }
    static std::string refusalOf(const std::string& path, const std::string& circumstances) {
        try {
            const TriageState state(path, circumstances);
        } catch (const ProbeError& error) {
            return error.what();
        }
        return "";
    }

    test::TemporaryFolder mFolder;
    const FileIdentity mFirst{"a.ogm", 10, 20};
    const FileIdentity mSecond{"b\xff.ogm", 11, 21};
};

TEST_F(TriageStateTest, WhatWasAddedIsKnownToTheNextRun) {
    {
        TriageState state(path(), "x");
        state.add(mFirst, checkedFile("a.ogm", {reasonOf("frames-lost", "3", 3)}));
        state.add(mSecond, checkedFile("b\xff.ogm"));
    }
    const TriageState state(path(), "x");
    EXPECT_EQ(state.size(), 2U);
    ASSERT_NE(state.find(mFirst), nullptr);
    EXPECT_EQ(state.find(mFirst)->verdict(), Verdict::kPlaysWithFaults);
    ASSERT_NE(state.find(mSecond), nullptr);
    EXPECT_EQ(state.find(mSecond)->path, "b\xff.ogm");
}

TEST_F(TriageStateTest, AFileOfAnotherSizeOrTimeIsNotKnown) {
    {
        TriageState state(path(), "x");
        state.add(mFirst, checkedFile("a.ogm"));
    }
    const TriageState state(path(), "x");
    EXPECT_EQ(state.find({"a.ogm", 11, 20}), nullptr);
    EXPECT_EQ(state.find({"a.ogm", 10, 21}), nullptr);
    EXPECT_EQ(state.find({"b.ogm", 10, 20}), nullptr);
}

TEST_F(TriageStateTest, ALastLineThatIsCutOffCostsItsFileAlone) {
    {
        TriageState state(path(), "x");
        state.add(mFirst, checkedFile("a.ogm"));
        state.add(mSecond, checkedFile("b.ogm"));
    }
    std::filesystem::resize_file(path(), text().size() - 5);
    {
        TriageState state(path(), "x");
        EXPECT_EQ(state.size(), 1U);
        state.add(mSecond, checkedFile("b.ogm"));
    }
    const TriageState state(path(), "x");
    EXPECT_EQ(state.size(), 2U);
    EXPECT_NE(state.find(mSecond), nullptr);
}

TEST_F(TriageStateTest, AHeadingThatIsCutOffIsWrittenAgain) {
    { const TriageState state(path(), "x"); }
    std::filesystem::resize_file(path(), text().size() - 3);
    { const TriageState state(path(), "x"); }
    EXPECT_EQ(refusal("x"), "");
    EXPECT_THAT(text(), HasSubstr("\"of\":\"x\"}\n"));
}

TEST_F(TriageStateTest, ADamagedLineInTheMiddleCostsItsFileAlone) {
    {
        TriageState state(path(), "x");
        state.add(mFirst, checkedFile("a.ogm"));
    }
    std::ofstream(path(), std::ios::app) << "{\"path\":\"zz\"}\nnonsense\n\n";
    {
        TriageState state(path(), "x");
        state.add(mSecond, checkedFile("b.ogm"));
    }
    EXPECT_EQ(TriageState(path(), "x").size(), 2U);
}

TEST_F(TriageStateTest, AStateOfOtherCircumstancesIsRefused) {
    { const TriageState state(path(), "x"); }
    EXPECT_THAT(refusal("y"), HasSubstr("is of another list of codecs, another plug-in"));
}

TEST_F(TriageStateTest, AnotherFileIsLeftAlone) {
    for (const char* content :
         {"my letters\n", "my letters", "{}\n", "[1]\n", "{\"ogmprobe_check_state\":\"1\"}\n"}) {
        std::ofstream(path(), std::ios::trunc) << content;
        EXPECT_THAT(refusal("x"), HasSubstr("is no state of a check")) << content;
        EXPECT_EQ(text(), content);
    }
}

TEST_F(TriageStateTest, StateIsOnlyKeptInARegularFile) {
    EXPECT_EQ(mkfifo(path().c_str(), 0600), 0);
    for (const std::string& path : {path(), std::string("/dev/null")}) {
        EXPECT_THAT(refusalOf(path, "x"), HasSubstr("is no file to keep a state in"));
    }
}

TEST_F(TriageStateTest, AHeadingThatCannotBeWrittenAgainIsAnError) {
    const Descriptor file(memfd_create("state", MFD_ALLOW_SEALING));
    ASSERT_GE(file.get(), 0);
    const std::string begun = "{\"ogmprobe_check_state\"";
    ASSERT_EQ(write(file.get(), begun.data(), begun.size()), static_cast<ssize_t>(begun.size()));
    ASSERT_EQ(fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK), 0);
    EXPECT_THAT(refusalOf("/proc/self/fd/" + std::to_string(file.get()), "x"),
                EndsWith("Operation not permitted"));
}

TEST_F(TriageStateTest, TwoRunsCannotHaveItAtOnce) {
    const TriageState state(path(), "x");
    EXPECT_THAT(refusal("x"), HasSubstr("belongs to another run"));
}

TEST_F(TriageStateTest, AFileHasASizeAndATime) {
    const std::string file = mFolder.write("film", "1234");
    const auto identity = identityOf(file);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->sizeBytes, 4U);
    EXPECT_GT(identity->modifiedNs, 0);
    EXPECT_FALSE(identityOf(file + "?"));
}

}  // namespace
}  // namespace ogmprobe::check
