// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "plugin/Format.h"

namespace ogmprobe {
namespace {

TEST(FormatEntries, AreAllThereAreInTheirOrder) {
    Format format;
    AMediaFormat_setString(format.get(), "mime", "video/avc");
    AMediaFormat_setInt32(format.get(), "anything", -1);
    AMediaFormat_setBuffer(format.get(), "csd-7", "\x01\xff", 2);
    EXPECT_EQ(format.entries(), (std::vector<FormatEntry>{{"mime", "string(video/avc)"},
                                                          {"anything", "int32(-1)"},
                                                          {"csd-7", "data(01ff)"}}));
}

TEST(FormatEntries, AreDistinguishedFromTheContentsOfTexts) {
    Format format;
    AMediaFormat_setString(format.get(), "title", "a, b: c, d");
    AMediaFormat_setInt64(format.get(), "durationUs", 5);
    EXPECT_EQ(format.entries(), (std::vector<FormatEntry>{{"title", "string(a, b: c, d)"},
                                                          {"durationUs", "int64(5)"}}));
}

TEST(FormatEntries, AreNoneInAnEmptyFormat) {
    EXPECT_TRUE(Format().entries().empty());
}

}  // namespace
}  // namespace ogmprobe
