// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include "FormatFixture.h"

namespace {

class FormatTextTest : public FormatTest {};

TEST_F(FormatTextTest, AnEmptyFormatIsALoneClosingBrace) {
    EXPECT_EQ("}", text());
}

TEST_F(FormatTextTest, EachTypeHasItsForm) {
    AMediaFormat_setInt32(mFormat, "int32", -1);
    EXPECT_EQ("int32: int32(-1)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setInt64(mFormat, "durationUs", 12345678901);
    EXPECT_EQ("durationUs: int64(12345678901)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setSize(mFormat, "size", 7);
    EXPECT_EQ("size: size_t(7)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setFloat(mFormat, "float", 1.5F);
    EXPECT_EQ("float: float(1.500000)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setDouble(mFormat, "double", 2.25);
    EXPECT_EQ("double: double(2.250000)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setString(mFormat, "mime", "video/avc");
    EXPECT_EQ("mime: string(video/avc)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setRect(mFormat, "crop", 0, 1, 2, 3);
    EXPECT_EQ("crop: Rect(0, 1, 2, 3)}", text());
    AMediaFormat_clear(mFormat);
    AMediaFormat_setBuffer(mFormat, "csd-0", "abc", 3);
    EXPECT_EQ("csd-0: data}", text());
}

TEST_F(FormatTextTest, EntriesAreSeparatedByCommaAndBlank) {
    AMediaFormat_setString(mFormat, "mime", "audio/mpeg");
    AMediaFormat_setInt32(mFormat, "sample-rate", 44100);
    AMediaFormat_setInt32(mFormat, "channel-count", 2);
    EXPECT_EQ("mime: string(audio/mpeg), sample-rate: int32(44100), channel-count: int32(2)}",
              text());
}

TEST_F(FormatTextTest, TheTextStaysValidUntilTheNextOne) {
    AMediaFormat_setInt32(mFormat, "a", 1);
    const char* const first = AMediaFormat_toString(mFormat);
    AMediaFormat_setInt32(mFormat, "a", 2);
    AMediaFormat_clear(mFormat);
    EXPECT_STREQ("a: int32(1)}", first);
}

}  // namespace
