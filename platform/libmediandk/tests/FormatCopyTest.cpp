// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include "FormatFixture.h"

namespace {

class FormatCopyTest : public FormatTest {
  protected:
    ~FormatCopyTest() override { AMediaFormat_delete(mFrom); }

    static uint8_t* bufferOf(AMediaFormat* format) {
        void* data = nullptr;
        size_t size = 0;
        EXPECT_TRUE(AMediaFormat_getBuffer(format, "buffer", &data, &size));
        return static_cast<uint8_t*>(data);
    }

    AMediaFormat* const mFrom = AMediaFormat_new();
};

TEST_F(FormatCopyTest, ReplacesAllEntriesAndKeepsTheOrderOfTheSource) {
    AMediaFormat_setInt32(mFormat, "z", 9);
    AMediaFormat_setInt32(mFormat, "a", 9);
    AMediaFormat_setInt32(mFrom, "b", 1);
    AMediaFormat_setInt64(mFrom, "a", 2);
    AMediaFormat_setString(mFrom, "c", "3");
    AMediaFormat_setRect(mFrom, "d", 1, 2, 3, 4);
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_copy(mFormat, mFrom));
    EXPECT_EQ("b: int32(1), a: int64(2), c: string(3), d: Rect(1, 2, 3, 4)}", text());
    EXPECT_EQ(text(), AMediaFormat_toString(mFrom));
}

TEST_F(FormatCopyTest, ANullFormatIsAnInvalidParameterAndChangesNothing) {
    AMediaFormat_setInt32(mFormat, "a", 1);
    EXPECT_EQ(AMEDIA_ERROR_INVALID_PARAMETER, AMediaFormat_copy(mFormat, nullptr));
    EXPECT_EQ(AMEDIA_ERROR_INVALID_PARAMETER, AMediaFormat_copy(nullptr, mFormat));
    EXPECT_EQ(AMEDIA_ERROR_INVALID_PARAMETER, AMediaFormat_copy(nullptr, nullptr));
    EXPECT_EQ("a: int32(1)}", text());
}

TEST_F(FormatCopyTest, AFormatCopiedOntoItselfEndsUpEmpty) {
    AMediaFormat_setInt32(mFormat, "a", 1);
    EXPECT_EQ(AMEDIA_OK, AMediaFormat_copy(mFormat, mFormat));
    EXPECT_EQ("}", text());
}

TEST_F(FormatCopyTest, StringsAreSeparate) {
    AMediaFormat_setString(mFrom, "name", "source");
    AMediaFormat_copy(mFormat, mFrom);
    AMediaFormat_setString(mFrom, "name", "changed");
    EXPECT_EQ("name: string(source)}", text());
}

TEST_F(FormatCopyTest, BuffersAreShared) {
    AMediaFormat_setBuffer(mFrom, "buffer", "abc", 3);
    AMediaFormat_copy(mFormat, mFrom);
    EXPECT_EQ(bufferOf(mFrom), bufferOf(mFormat));
    bufferOf(mFormat)[1] = 'X';
    EXPECT_EQ('X', bufferOf(mFrom)[1]);
}

TEST_F(FormatCopyTest, ASharedBufferOutlivesTheFormatItCameFrom) {
    AMediaFormat* const from = AMediaFormat_new();
    AMediaFormat_setBuffer(from, "buffer", "abc", 3);
    AMediaFormat_copy(mFormat, from);
    AMediaFormat_delete(from);
    EXPECT_EQ('b', bufferOf(mFormat)[1]);
}

TEST_F(FormatCopyTest, SettingABufferAgainEndsTheSharing) {
    AMediaFormat_setBuffer(mFrom, "buffer", "abc", 3);
    AMediaFormat_copy(mFormat, mFrom);
    AMediaFormat_setBuffer(mFrom, "buffer", "xyz", 3);
    EXPECT_EQ('a', bufferOf(mFormat)[0]);
    EXPECT_EQ('x', bufferOf(mFrom)[0]);
}

}  // namespace
