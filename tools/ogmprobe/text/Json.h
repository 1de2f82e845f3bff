// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace ogmprobe {

/** Raised whenever a member of any JSON output changes its name, place, type or meaning. */
constexpr int kSchemaVersion = 1;

/** The value, or null. */
template <typename T>
nlohmann::ordered_json orNull(const std::optional<T>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

/** A document over several lines. Bytes that are no UTF-8, as paths may hold, are replaced. */
inline std::string toDocument(const nlohmann::ordered_json& json) {
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

/** A document in one line. */
inline std::string toLine(const nlohmann::ordered_json& json) {
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace ogmprobe
