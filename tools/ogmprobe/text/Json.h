// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace ogmprobe {

/** To be raised when a member of any JSON output changes its name, place, type or meaning. */
constexpr int kSchemaVersion = 1;

/** Returns the value, or null. */
template <typename T>
nlohmann::ordered_json orNull(const std::optional<T>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

/**
 * Returns a document over several lines. Bytes that are not UTF-8, as in some paths, are replaced.
 */
inline std::string toDocument(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

/** Returns a document on one line. */
inline std::string toLine(const nlohmann::ordered_json& json) {
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace ogmprobe
