// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <errno.h>

#include <string>

#include "LogFixture.h"

namespace {

class DefaultTagTest : public LogTest {
  protected:
    ~DefaultTagTest() override { __android_log_set_default_tag(program_invocation_short_name); }
};

TEST_F(DefaultTagTest, ANullTagIsTheProgramsName) {
    __android_log_write(ANDROID_LOG_INFO, nullptr, "text");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("log_test", entries()[0].tag);
}

TEST_F(DefaultTagTest, ANullTagIsTheOneThatWasSet) {
    __android_log_set_default_tag("chosen");
    __android_log_write(ANDROID_LOG_INFO, nullptr, "written");
    __android_log_print(ANDROID_LOG_INFO, nullptr, "printed");
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ("chosen", entries()[0].tag);
    EXPECT_EQ("chosen", entries()[1].tag);
}

TEST_F(DefaultTagTest, TheTagIsCopiedWhenItIsSet) {
    std::string tag = "original";
    __android_log_set_default_tag(tag.c_str());
    tag = "altered!";
    __android_log_write(ANDROID_LOG_INFO, nullptr, "text");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("original", entries()[0].tag);
}

TEST_F(DefaultTagTest, AnEmptyTagStaysEmpty) {
    __android_log_write(ANDROID_LOG_INFO, "", "text");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("", entries()[0].tag);
}

}  // namespace
