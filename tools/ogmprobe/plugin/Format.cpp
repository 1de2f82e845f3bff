// SPDX-License-Identifier: Apache-2.0
#include "plugin/Format.h"

#include <fmt/core.h>

#include "text/Hex.h"

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

std::vector<FormatEntry> Format::entriesOf(AMediaFormat* format) {
    std::vector<FormatEntry> entries = formatEntries(AMediaFormat_toString(format));
    for (FormatEntry& entry : entries) {
        void* data = nullptr;
        size_t size = 0;
        // The platform's text omits the bytes.
        if (AMediaFormat_getBuffer(format, entry.name.c_str(), &data, &size)) {
            entry.value = fmt::format("data({})", hexText({static_cast<uint8_t*>(data), size}));
        }
    }
    return entries;
}

}  // namespace ogmprobe
