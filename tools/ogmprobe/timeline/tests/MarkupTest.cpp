// SPDX-License-Identifier: Apache-2.0
#include "Markup.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace ogmprobe::timeline::test {
namespace {

TEST(Escaped, ReplacesMarkup) {
    EXPECT_EQ(escaped("<b title=\"a\" id='b'>&amp;"),
              "&lt;b title=&quot;a&quot; id=&#39;b&#39;&gt;&amp;amp;");
    EXPECT_EQ(escaped("película 映画 (1).ogm"), "película 映画 (1).ogm");
}

TEST(Escaped, ReplacesWhatXmlDoesNotAllow) {
    EXPECT_EQ(escaped("a\xff"
                      "b"),
              "a\xef\xbf\xbd"
              "b");
    EXPECT_EQ(escaped("a\x1b[2J\n"), "a\xef\xbf\xbd[2J\xef\xbf\xbd");
    EXPECT_EQ(escaped("\xef\xbf\xbf."), "\xef\xbf\xbd.");
}

TEST(FilledIn, DoesNotLookIntoValues) {
    EXPECT_EQ(filledIn("<{{a}}> {{b}}.", {{"a", "{{b}}"}, {"b", "c"}}), "<{{b}}> c.");
}

TEST(FilledIn, NeedsAValueForEachName) {
    EXPECT_THROW(filledIn("{{a}}", {}), std::out_of_range);
}

}  // namespace
}  // namespace ogmprobe::timeline::test
