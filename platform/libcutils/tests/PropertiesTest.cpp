// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <errno.h>
#include <string.h>

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <sys/system_properties.h>

static_assert(PROPERTY_VALUE_MAX == 92);
static_assert(PROP_VALUE_MAX == 92);

namespace {

constexpr size_t kLongestValue = PROPERTY_VALUE_MAX - 1;

struct Result {
    int length;
    std::string value;
};

Result get(const char* key, const char* defaultValue) {
    char value[PROPERTY_VALUE_MAX];
    memset(value, '#', sizeof value);
    const int length = property_get(key, value, defaultValue);
    return {length, value};
}

TEST(SystemPropertyTest, TheSerialChangesWithEveryChangeAndNotWithoutOne) {
    const uint32_t before = __system_property_area_serial();
    EXPECT_EQ(before, __system_property_area_serial());
    property_set("serial.test", "1");
    const uint32_t after = __system_property_area_serial();
    EXPECT_NE(before, after);
    property_set("serial.test", "2");
    EXPECT_NE(after, __system_property_area_serial());
}

TEST(PropertiesTest, AValueThatWasSetIsReadBackWithItsLength) {
    ASSERT_EQ(0, property_set("test.set", "value"));
    const Result result = get("test.set", "default");
    EXPECT_EQ("value", result.value);
    EXPECT_EQ(5, result.length);
}

TEST(PropertiesTest, ALaterValueReplacesTheEarlier) {
    property_set("test.replaced", "a longer first value");
    property_set("test.replaced", "second");
    EXPECT_EQ("second", get("test.replaced", "").value);
}

TEST(PropertiesTest, AnAbsentPropertyGivesTheDefaultAndItsLength) {
    const Result result = get("test.absent", "fallback");
    EXPECT_EQ("fallback", result.value);
    EXPECT_EQ(8, result.length);
}

TEST(PropertiesTest, AnEmptyPropertyGivesTheDefault) {
    property_set("test.empty", "");
    EXPECT_EQ("fallback", get("test.empty", "fallback").value);
}

TEST(PropertiesTest, ANullDefaultGivesAnEmptyValue) {
    const Result result = get("test.absent", nullptr);
    EXPECT_EQ("", result.value);
    EXPECT_EQ(0, result.length);
}

TEST(PropertiesTest, ADefaultIsCutAt91Characters) {
    const std::string longDefault(200, 'd');
    const Result result = get("test.absent", longDefault.c_str());
    EXPECT_EQ(longDefault.substr(0, kLongestValue), result.value);
    EXPECT_EQ(91, result.length);
}

TEST(PropertiesTest, AValueOf91CharactersIsTheLongest) {
    const std::string longest(kLongestValue, 'v');
    EXPECT_EQ(0, property_set("test.longest", longest.c_str()));
    EXPECT_EQ(91, get("test.longest", "").length);
    EXPECT_EQ(-1, property_set("test.longest", (longest + "v").c_str()));
    EXPECT_EQ(longest, get("test.longest", "").value);
}

TEST(PropertiesTest, NamesMayBeLongerThan32Characters) {
    const std::string name(300, 'n');
    EXPECT_EQ(0, property_set(name.c_str(), "far"));
    EXPECT_EQ("far", get(name.c_str(), "").value);
    EXPECT_EQ("", get(name.substr(0, 31).c_str(), "").value);
}

TEST(PropertiesTest, NamesAreMatchedExactly) {
    property_set("test.exact", "1");
    for (const char* name : {"test.Exact", "test.exact ", " test.exact", "test.exac", "test"}) {
        EXPECT_EQ("", get(name, "").value) << name;
    }
}

TEST(PropertiesTest, ANullValueIsSetAsEmpty) {
    property_set("test.null", "something");
    EXPECT_EQ(0, property_set("test.null", nullptr));
    EXPECT_EQ(0, get("test.null", nullptr).length);
}

TEST(PropertiesTest, ANullOrEmptyNameCannotBeSet) {
    EXPECT_EQ(-1, property_set(nullptr, "value"));
    EXPECT_EQ(-1, property_set("", "value"));
}

TEST(PropertiesTest, DoesNotChangeErrno) {
    errno = EXDEV;
    property_set("test.errno", "1");
    get("test.errno", "");
    get("test.errno.absent", "");
    EXPECT_EQ(EXDEV, errno);
}

TEST(PropertiesTest, TheLowerLayerReadsTheSameProperties) {
    property_set("test.lower", "same");
    char value[PROP_VALUE_MAX];
    EXPECT_EQ(4, __system_property_get("test.lower", value));
    EXPECT_STREQ("same", value);
}

TEST(PropertiesTest, TheLowerLayerGivesAnEmptyTextForAnAbsentProperty) {
    char value[PROP_VALUE_MAX] = "old";
    EXPECT_EQ(0, __system_property_get("test.lower.absent", value));
    EXPECT_STREQ("", value);
}

TEST(PropertiesTest, AReaderNeverSeesAHalfWrittenValue) {
    const std::string first(60, 'a');
    const std::string second(30, 'b');
    property_set("test.race", first.c_str());
    std::thread writer([&] {
        for (int i = 0; i < 1000; ++i) {
            property_set("test.race", (i % 2 == 0 ? second : first).c_str());
        }
    });
    for (int i = 0; i < 1000; ++i) {
        const std::string value = get("test.race", "").value;
        EXPECT_TRUE(value == first || value == second) << value;
    }
    writer.join();
}

}  // namespace
