// SPDX-License-Identifier: Apache-2.0
#include "TrackLine.h"

#include <optional>

#include "JsonLine.h"

namespace ogmdump {
namespace {

std::optional<int64_t> numberIn(AMediaFormat* format, const char* key) {
    int32_t value = 0;
    return AMediaFormat_getInt32(format, key, &value) ? std::optional<int64_t>(value)
                                                      : std::nullopt;
}

std::optional<int64_t> durationIn(AMediaFormat* format) {
    int64_t value = 0;
    return AMediaFormat_getInt64(format, AMEDIAFORMAT_KEY_DURATION, &value)
                   ? std::optional<int64_t>(value)
                   : std::nullopt;
}

/** Returns bytes as hexadecimal digits. */
std::optional<std::string> bytesIn(AMediaFormat* format, const char* key) {
    void* data = nullptr;
    size_t size = 0;
    if (!AMediaFormat_getBuffer(format, key, &data, &size)) {
        return std::nullopt;
    }
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        const unsigned byte = static_cast<const uint8_t*>(data)[i];
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xf];
    }
    return text;
}

/** Returns an empty text if the format has no MIME type. */
std::string mimeOf(AMediaFormat* format) {
    const char* mime = nullptr;
    return AMediaFormat_getString(format, AMEDIAFORMAT_KEY_MIME, &mime) ? mime : "";
}

}  // namespace

std::string trackLine(size_t index, AMediaFormat* format) {
    const char* whole = AMediaFormat_toString(format);
    return JsonLine()
            .text("type", std::string("track"))
            .number("index", static_cast<int64_t>(index))
            .text("mime", mimeOf(format))
            .number("duration_us", durationIn(format))
            .number("width", numberIn(format, AMEDIAFORMAT_KEY_WIDTH))
            .number("height", numberIn(format, AMEDIAFORMAT_KEY_HEIGHT))
            .number("frame_rate", numberIn(format, AMEDIAFORMAT_KEY_FRAME_RATE))
            .number("sample_rate", numberIn(format, AMEDIAFORMAT_KEY_SAMPLE_RATE))
            .number("channel_count", numberIn(format, AMEDIAFORMAT_KEY_CHANNEL_COUNT))
            .text("csd_0", bytesIn(format, AMEDIAFORMAT_KEY_CSD_0))
            .text("format", std::string(whole != nullptr ? whole : ""))
            .line();
}

}  // namespace ogmdump
