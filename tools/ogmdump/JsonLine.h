// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ogmdump {

/** A JSON object on one line, built member by member. */
class JsonLine {
  public:
    /** Bytes above ASCII are read as Latin-1. */
    JsonLine& text(const char* name, const std::string& value);
    JsonLine& number(const char* name, int64_t value);
    JsonLine& flag(const char* name, bool value);
    JsonLine& null(const char* name);
    /** Adds the value, or null. */
    JsonLine& text(const char* name, const std::optional<std::string>& value);
    JsonLine& number(const char* name, const std::optional<int64_t>& value);
    /** Adds an array that is empty or holds `member`. */
    JsonLine& array(const char* name, const std::optional<JsonLine>& member);

    std::string line() const { return mMembers + "}"; }

  private:
    JsonLine& member(const char* name, const std::string& value);

    std::string mMembers = "{";
};

}  // namespace ogmdump
