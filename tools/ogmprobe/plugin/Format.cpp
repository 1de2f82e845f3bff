// SPDX-License-Identifier: Apache-2.0
#include "plugin/Format.h"

namespace ogmprobe {

std::optional<int32_t> Format::int32(const char* key) const {
    int32_t value = 0;
    return AMediaFormat_getInt32(get(), key, &value) ? std::optional(value) : std::nullopt;
}

std::optional<int64_t> Format::int64(const char* key) const {
    int64_t value = 0;
    return AMediaFormat_getInt64(get(), key, &value) ? std::optional(value) : std::nullopt;
}

std::optional<std::string> Format::string(const char* key) const {
    const char* text = nullptr;
    return AMediaFormat_getString(get(), key, &text) ? std::optional<std::string>(text)
                                                     : std::nullopt;
}

std::optional<std::vector<uint8_t>> Format::buffer(const char* key) const {
    void* data = nullptr;
    size_t size = 0;
    if (!AMediaFormat_getBuffer(get(), key, &data, &size)) {
        return std::nullopt;
    }
    const auto* bytes = static_cast<const uint8_t*>(data);
    return std::vector<uint8_t>(bytes, bytes + size);
}

}  // namespace ogmprobe
