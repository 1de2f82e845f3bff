// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include <string>

#include "FormatFixture.h"

namespace {

class FormatStringTest : public FormatTest {
  protected:
    const char* get(const char* name) {
        const char* value = nullptr;
        EXPECT_TRUE(AMediaFormat_getString(mFormat, name, &value)) << name;
        return value;
    }
};

using FormatStringDeathTest = FormatStringTest;

TEST_F(FormatStringTest, ATextIsCopied) {
    char value[] = "text";
    AMediaFormat_setString(mFormat, "name", value);
    value[0] = 'n';
    EXPECT_STREQ("text", get("name"));
}

TEST_F(FormatStringTest, AnEmptyTextIsAnEntry) {
    AMediaFormat_setString(mFormat, "name", "");
    EXPECT_STREQ("", get("name"));
}

TEST_F(FormatStringTest, AFetchedTextIsNotMovedByFetchingOtherNames) {
    for (int i = 0; i < 200; ++i) {
        AMediaFormat_setString(mFormat, std::to_string(i).c_str(), "x");
    }
    const char* const first = get("0");
    for (int i = 1; i < 200; ++i) {
        get(std::to_string(i).c_str());
    }
    EXPECT_STREQ("x", first);
    EXPECT_EQ(first, get("0"));
}

TEST_F(FormatStringTest, AFetchedTextStaysWhenTheEntryIsSetAgain) {
    AMediaFormat_setString(mFormat, "name", "old");
    const char* const fetched = get("name");
    AMediaFormat_setString(mFormat, "name", "new");
    EXPECT_STREQ("old", fetched);
    AMediaFormat_setInt32(mFormat, "name", 1);
    EXPECT_STREQ("old", fetched);
}

TEST_F(FormatStringTest, AFetchedTextStaysWhenTheFormatIsCleared) {
    AMediaFormat_setString(mFormat, "name", "old");
    const char* const fetched = get("name");
    AMediaFormat_clear(mFormat);
    EXPECT_STREQ("old", fetched);
}

TEST_F(FormatStringTest, AFetchedTextStaysWhenAnotherFormatIsCopiedIn) {
    AMediaFormat* const other = AMediaFormat_new();
    AMediaFormat_setString(other, "name", "other");
    AMediaFormat_setString(mFormat, "name", "old");
    const char* const fetched = get("name");
    AMediaFormat_copy(mFormat, other);
    EXPECT_STREQ("old", fetched);
    EXPECT_STREQ("other", get("name"));
    AMediaFormat_delete(other);
}

TEST_F(FormatStringTest, FetchingTheSameNameAgainGivesTheNewText) {
    AMediaFormat_setString(mFormat, "name", "old");
    get("name");
    AMediaFormat_setString(mFormat, "name", "a text too long to be kept in place of the old");
    EXPECT_STREQ("a text too long to be kept in place of the old", get("name"));
}

TEST_F(FormatStringDeathTest, ANullTextCrashes) {
    EXPECT_DEATH(AMediaFormat_setString(mFormat, "name", nullptr), "");
}

}  // namespace
