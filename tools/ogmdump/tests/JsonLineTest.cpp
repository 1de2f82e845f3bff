// SPDX-License-Identifier: Apache-2.0
#include "JsonLine.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace ogmdump {
namespace {

TEST(JsonLine, WithoutMembersIsAnEmptyObject) {
    EXPECT_EQ(JsonLine().line(), "{}");
}

TEST(JsonLine, HasItsMembersInTheirOrder) {
    EXPECT_EQ(JsonLine().number("n", INT64_MIN).flag("b", true).null("x").line(),
              R"({"n":-9223372036854775808,"b":true,"x":null})");
    EXPECT_EQ(JsonLine().number("n", std::nullopt).text("t", std::optional<std::string>()).line(),
              R"({"n":null,"t":null})");
}

TEST(JsonLine, EveryByteOfATextComesBack) {
    std::string text;
    std::string asUtf8;
    for (int code = 0; code < 256; ++code) {
        text += static_cast<char>(code);
        if (code < 0x80) {
            asUtf8 += static_cast<char>(code);
        } else {
            asUtf8 += static_cast<char>(0xc0 | code >> 6);
            asUtf8 += static_cast<char>(0x80 | (code & 0x3f));
        }
    }
    const std::string line = JsonLine().text("t", text).line();
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_EQ(nlohmann::json::parse(line)["t"], asUtf8);
}

TEST(JsonLine, AnArrayHasOneMemberOrNone) {
    EXPECT_EQ(JsonLine().array("a", std::nullopt).array("b", JsonLine().number("n", 1)).line(),
              R"({"a":[],"b":[{"n":1}]})");
}

}  // namespace
}  // namespace ogmdump
