// SPDX-License-Identifier: Apache-2.0
// This program defines its own functions with the same names, as a program that counts calls does.
#include <android/log.h>
#include <cutils/properties.h>
#include <dlfcn.h>
#include <string.h>

#include <gtest/gtest.h>

namespace {

int gOwnPropertyReads = 0;
int gOwnWrites = 0;
int gLogged = 0;

}  // namespace

int property_get(const char*, char* value, const char*) {
    ++gOwnPropertyReads;
    value[0] = '\0';
    return 0;
}

int __android_log_write(int, const char*, const char*) {
    ++gOwnWrites;
    return 1;
}

namespace {

TEST(InterpositionTest, TheProgramsFunctionTakesTheLibrarysPlace) {
    EXPECT_EQ(reinterpret_cast<void*>(__android_log_write),
              dlsym(RTLD_DEFAULT, "__android_log_write"));
    const int before = gOwnWrites;
    __android_log_write(ANDROID_LOG_INFO, "InterpositionTest", "text");
    EXPECT_EQ(before + 1, gOwnWrites);
}

TEST(InterpositionTest, TheLevelIsReadBelowTheProgramsPropertyGet) {
    property_set("log.tag.InterpositionTest", "E");
    EXPECT_EQ(0, __android_log_is_loggable(ANDROID_LOG_WARN, "InterpositionTest",
                                           ANDROID_LOG_VERBOSE));
    EXPECT_EQ(0, gOwnPropertyReads);
    property_set("log.tag.InterpositionTest", "");
}

TEST(InterpositionTest, OtherFunctionsOfTheLibraryDoNotCallTheProgramsOne) {
    __android_log_set_logger([](const struct __android_log_message*) { ++gLogged; });
    const int writesBefore = gOwnWrites;
    __android_log_print(ANDROID_LOG_INFO, "InterpositionTest", "text");
    EXPECT_EQ(1, gLogged);
    EXPECT_EQ(writesBefore, gOwnWrites);
    __android_log_set_logger(__android_log_logd_logger);
}

}  // namespace
