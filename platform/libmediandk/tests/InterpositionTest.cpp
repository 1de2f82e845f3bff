// SPDX-License-Identifier: Apache-2.0
// This program defines its own setters and its own key, as a program that observes a plug-in does.
#include <media/NdkMediaFormat.h>

#include <dlfcn.h>

#include <gtest/gtest.h>

namespace {

int gOwnSets = 0;
int gOwnClears = 0;

}  // namespace

// The address sanitizer reports a variable that replaces the library's as an error.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "detect_odr_violation=0";
}

const char* AMEDIAFORMAT_KEY_MIME = "own mime";

void AMediaFormat_setInt32(AMediaFormat*, const char*, int32_t) {
    ++gOwnSets;
}

void AMediaFormat_clear(AMediaFormat*) {
    ++gOwnClears;
}

namespace {

TEST(InterpositionTest, TheProgramsFunctionTakesTheLibrarysPlace) {
    EXPECT_EQ(reinterpret_cast<void*>(AMediaFormat_setInt32),
              dlsym(RTLD_DEFAULT, "AMediaFormat_setInt32"));
    AMediaFormat* const format = AMediaFormat_new();
    AMediaFormat_setInt32(format, "a", 1);
    EXPECT_EQ(1, gOwnSets);
    EXPECT_STREQ("}", AMediaFormat_toString(format));
    AMediaFormat_delete(format);
}

TEST(InterpositionTest, TheProgramsKeyTakesTheLibrarysPlace) {
    const auto* const key =
            static_cast<const char* const*>(dlsym(RTLD_DEFAULT, "AMEDIAFORMAT_KEY_MIME"));
    ASSERT_NE(nullptr, key);
    EXPECT_STREQ("own mime", *key);
}

TEST(InterpositionTest, OtherFunctionsOfTheLibraryDoNotCallTheProgramsOnes) {
    AMediaFormat* const from = AMediaFormat_new();
    AMediaFormat* const to = AMediaFormat_new();
    AMediaFormat_setInt64(from, "a", 1);
    AMediaFormat_setInt64(to, "b", 2);
    const int setsBefore = gOwnSets;
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_copy(to, from));
    EXPECT_STREQ("a: int64(1)}", AMediaFormat_toString(to));
    EXPECT_EQ(setsBefore, gOwnSets);
    EXPECT_EQ(0, gOwnClears);
    AMediaFormat_delete(from);
    AMediaFormat_delete(to);
}

}  // namespace
