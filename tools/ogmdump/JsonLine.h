// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ogmdump {

/** A JSON object in one line, built member by member. */
class JsonLine {
  public:
    /** Bytes that are no ASCII are taken for characters of Latin-1. */
    JsonLine& text(const char* name, const std::string& value);
    JsonLine& number(const char* name, int64_t value);
    JsonLine& flag(const char* name, bool value);
    JsonLine& null(const char* name);
    /** The value, or null. */
    JsonLine& text(const char* name, const std::optional<std::string>& value);
    JsonLine& number(const char* name, const std::optional<int64_t>& value);
    /** An array without members, or with one, which is a line of its own. */
    JsonLine& array(const char* name, const std::optional<JsonLine>& member);

    std::string line() const { return mMembers + "}"; }

  private:
    JsonLine& member(const char* name, const std::string& value);

    std::string mMembers = "{";
};

}  // namespace ogmdump
