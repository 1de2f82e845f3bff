// SPDX-License-Identifier: Apache-2.0
#include "text/VisibleText.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

TEST(VisibleText, DoesNotChangeOrdinaryText) {
    EXPECT_EQ(visible("a film (2).ogm"), "a film (2).ogm");
    EXPECT_EQ(visible("fünf 映画.ogm"), "fünf 映画.ogm");
}

TEST(VisibleText, EscapesControlCharacters) {
    EXPECT_EQ(visible("a\nb\tc\033[2Jd\x7f"), "a\\nb\\tc\\x1b[2Jd\\x7f");
    EXPECT_EQ(visible("\u009b"), "\\u{9b}");
}

TEST(VisibleText, EscapesLineSeparatorsAndChangesOfDirection) {
    EXPECT_EQ(visible("a\u2028b\u202egpj\u2066\u200f"),
              "a\\u{2028}b\\u{202e}gpj\\u{2066}\\u{200f}");
}

TEST(VisibleText, EscapesBytesThatAreNoUtf8) {
    EXPECT_EQ(visible("a\xff"
                      "b\xc3"),
              "a\\xffb\\xc3");
    EXPECT_EQ(visible("\xc0\x8a"), "\\xc0\\x8a") << "a line feed in disguise";
    EXPECT_EQ(visible("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half a pair";
}

TEST(VisibleText, CountsCharacters) {
    EXPECT_EQ(columnsOf("fünf…"), 5U);
}

TEST(VisibleText, IsCutWithAnEllipsis) {
    EXPECT_EQ(shortened("fünf", 4), "fünf");
    EXPECT_EQ(shortened("fünfzehn", 4), "fün…");
}

}  // namespace
}  // namespace ogmprobe
