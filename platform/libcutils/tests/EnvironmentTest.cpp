// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <stdlib.h>

#include <string>

#include <gtest/gtest.h>

namespace {

const std::string kTooLongValue(92, 'x');

std::string entries() {
    return "first=1;second=two words\nthird=a=b;;\n"
           "repeated=old;repeated=new;no value;=no name;empty=; blank = around ;"
           "long=" +
           kTooLongValue + ";last=end";
}

std::string get(const char* key) {
    char value[PROPERTY_VALUE_MAX];
    property_get(key, value, "(absent)");
    return value;
}

TEST(EnvironmentTest, EntriesAreSeparatedBySemicolons) {
    EXPECT_EQ("1", get("first"));
    EXPECT_EQ(1, property_get_int32("first", 0));
}

TEST(EnvironmentTest, EntriesAreSeparatedByLineEnds) {
    EXPECT_EQ("two words", get("second"));
}

TEST(EnvironmentTest, TheFirstEqualsSignEndsTheName) {
    EXPECT_EQ("a=b", get("third"));
}

TEST(EnvironmentTest, OfTwoEntriesWithOneNameTheLaterApplies) {
    EXPECT_EQ("new", get("repeated"));
}

TEST(EnvironmentTest, AnEntryWithoutEqualsSignIsIgnored) {
    EXPECT_EQ("(absent)", get("no value"));
}

TEST(EnvironmentTest, AnEntryWithoutNameIsIgnored) {
    EXPECT_EQ("(absent)", get(""));
}

TEST(EnvironmentTest, AnEmptyValueIsTreatedAsAbsent) {
    EXPECT_EQ("(absent)", get("empty"));
}

TEST(EnvironmentTest, BlanksBelongToNameAndValue) {
    EXPECT_EQ(" around ", get(" blank "));
    EXPECT_EQ("(absent)", get("blank"));
}

TEST(EnvironmentTest, ATooLongValueIsIgnored) {
    EXPECT_EQ("(absent)", get("long"));
}

TEST(EnvironmentTest, TheLastEntryNeedsNoSeparator) {
    EXPECT_EQ("end", get("last"));
}

TEST(EnvironmentTest, TheVariableIsReadOnlyOnce) {
    EXPECT_EQ("1", get("first"));
    setenv("ANDROID_PROPERTIES", "first=changed", 1);
    EXPECT_EQ("1", get("first"));
}

TEST(EnvironmentTest, PropertySetReplacesWhatTheEnvironmentGave) {
    EXPECT_EQ(0, property_set("second", "set"));
    EXPECT_EQ("set", get("second"));
    EXPECT_EQ(0, property_set("second", "two words"));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("ANDROID_PROPERTIES", entries().c_str(), 1);
    return RUN_ALL_TESTS();
}
