// SPDX-License-Identifier: Apache-2.0
// The macros without LOG_TAG; through the header's third path.
#include <cutils/log.h>

#include "LogFixture.h"

namespace {

class LogMacrosWithoutTagTest : public LogTest {};

TEST_F(LogMacrosWithoutTagTest, TheTagIsNullAndThereforeTheDefaultTag) {
    const char* const tag = LOG_TAG;
    EXPECT_EQ(nullptr, tag);
    ALOGI("text");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("log_test", entries()[0].tag);
}

TEST_F(LogMacrosWithoutTagTest, VerboseFollowsTheKindOfBuild) {
#ifdef NDEBUG
    EXPECT_EQ(1, LOG_NDEBUG);
#else
    EXPECT_EQ(0, LOG_NDEBUG);
#endif
}

}  // namespace
