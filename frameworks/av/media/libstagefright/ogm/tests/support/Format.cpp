// SPDX-License-Identifier: Apache-2.0
#include "Format.h"

namespace android::ogm::test {

std::optional<std::string> stringOf(AMediaFormat* format, const char* key) {
    const char* value = nullptr;
    return AMediaFormat_getString(format, key, &value) ? std::optional<std::string>(value)
                                                       : std::nullopt;
}

std::optional<int32_t> int32Of(AMediaFormat* format, const char* key) {
    int32_t value = 0;
    return AMediaFormat_getInt32(format, key, &value) ? std::optional(value) : std::nullopt;
}

std::optional<int64_t> int64Of(AMediaFormat* format, const char* key) {
    int64_t value = 0;
    return AMediaFormat_getInt64(format, key, &value) ? std::optional(value) : std::nullopt;
}

std::optional<Bytes> bufferOf(AMediaFormat* format, const char* key) {
    void* data = nullptr;
    size_t size = 0;
    if (!AMediaFormat_getBuffer(format, key, &data, &size)) {
        return std::nullopt;
    }
    const auto* bytes = static_cast<const uint8_t*>(data);
    return Bytes(bytes, bytes + size);
}

}  // namespace android::ogm::test
