// SPDX-License-Identifier: Apache-2.0
#include "text/TextTable.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

using Align = TextTable::Align;

TEST(TextTable, MakesEachColumnAsWideAsItsWidestCell) {
    TextTable table({{"No", Align::kRight}, {"Name"}, {"Size", Align::kRight}});
    table.add({"1", "a", "12345"});
    table.add({"100", "longer", "1"});
    EXPECT_EQ(table.text("  ", false),
              "   No  Name     Size\n"
              "    1  a       12345\n"
              "  100  longer      1\n");
}

TEST(TextTable, EndsNoLineInABlank) {
    TextTable table({{"A"}, {"Long heading"}});
    table.add({"x", "y"});
    EXPECT_EQ(table.text("", false), "A  Long heading\nx  y\n");
}

TEST(TextTable, PutsOnlyTheHeadingsInBold) {
    TextTable table({{"A"}});
    table.add({"x"});
    EXPECT_EQ(table.text("", true), "\033[1mA\033[0m\nx\n");
}

}  // namespace
}  // namespace ogmprobe
