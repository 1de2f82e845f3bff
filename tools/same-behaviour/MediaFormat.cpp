// SPDX-License-Identifier: Apache-2.0
#include "MediaFormat.h"

#include <algorithm>
#include <cstdlib>

#include "Record.h"

using android::ogm::trace::contentText;
using android::ogm::trace::FormatValue;
using android::ogm::trace::Kind;
using android::ogm::trace::record;
using android::ogm::trace::Rect;
using android::ogm::trace::Size;

struct AMediaFormat {
    std::string name;
    std::vector<std::pair<std::string, FormatValue>> entries;
    /** What getString returned last. */
    std::string fetched;
    std::string text;
};

namespace {

struct ToText {
    std::string operator()(int32_t value) const { return "int32 " + std::to_string(value); }
    std::string operator()(int64_t value) const { return "int64 " + std::to_string(value); }
    std::string operator()(float value) const { return "float " + std::to_string(value); }
    std::string operator()(double value) const { return "double " + std::to_string(value); }
    std::string operator()(Size size) const { return "size " + std::to_string(size.value); }
    std::string operator()(const Rect& rect) const {
        std::string text = "rect";
        for (const int32_t side : rect) {
            text += " " + std::to_string(side);
        }
        return text;
    }
    std::string operator()(const std::string& value) const { return "\"" + value + "\""; }
    std::string operator()(const std::vector<uint8_t>& value) const {
        return contentText(value.data(), value.size());
    }
};

std::string textOf(const FormatValue& value) {
    return std::visit(ToText{}, value);
}

const char* nameOf(const AMediaFormat* format) {
    return format == nullptr ? "null" : format->name.c_str();
}

FormatValue* find(AMediaFormat* format, const char* key) {
    const auto found = std::find_if(format->entries.begin(), format->entries.end(),
                                    [key](const auto& entry) { return entry.first == key; });
    return found == format->entries.end() ? nullptr : &found->second;
}

void set(AMediaFormat* format, const char* key, FormatValue value) {
    record(Kind::kFormat, "%s: set %s to %s", nameOf(format), key, textOf(value).c_str());
    if (FormatValue* const present = find(format, key)) {
        *present = std::move(value);
    } else {
        format->entries.emplace_back(key, std::move(value));
    }
}

template <typename Value>
const Value* get(AMediaFormat* format, const char* key, const char* type) {
    const FormatValue* const present = find(format, key);
    const Value* const value = present == nullptr ? nullptr : std::get_if<Value>(present);
    record(Kind::kFormat, "%s: get %s %s -> %s", nameOf(format), type, key,
           value == nullptr ? "none" : textOf(*present).c_str());
    return value;
}

template <typename Value>
bool getInto(AMediaFormat* format, const char* key, const char* type, Value* out) {
    const Value* const value = get<Value>(format, key, type);
    if (value != nullptr) {
        *out = *value;
    }
    return value != nullptr;
}

}  // namespace

namespace android::ogm::trace {

AMediaFormat* newFormat(std::string name) {
    return new AMediaFormat{std::move(name), {}, {}, {}};
}

std::string formatText(const AMediaFormat* format) {
    std::string text;
    for (const auto& [key, value] : format->entries) {
        text += (text.empty() ? "" : ", ") + key + "=" + textOf(value);
    }
    return "{" + text + "}";
}

const FormatValue* findValue(const AMediaFormat* format, const std::string& key) {
    return find(const_cast<AMediaFormat*>(format), key.c_str());
}

void clearEntries(AMediaFormat* format) {
    format->entries.clear();
}

}  // namespace android::ogm::trace

AMediaFormat* AMediaFormat_new() {
    static uint32_t made = 0;
    auto* const format =
            android::ogm::trace::newFormat("the plug-in's format " + std::to_string(++made));
    record(Kind::kFormat, "new: %s", nameOf(format));
    return format;
}

media_status_t AMediaFormat_delete(AMediaFormat* format) {
    record(Kind::kFormat, "delete %s", nameOf(format));
    delete format;
    return AMEDIA_OK;
}

const char* AMediaFormat_toString(AMediaFormat* format) {
    record(Kind::kFormat, "%s: to string", nameOf(format));
    format->text = android::ogm::trace::formatText(format);
    return format->text.c_str();
}

bool AMediaFormat_getInt32(AMediaFormat* format, const char* name, int32_t* out) {
    return getInto(format, name, "int32", out);
}

bool AMediaFormat_getInt64(AMediaFormat* format, const char* name, int64_t* out) {
    return getInto(format, name, "int64", out);
}

bool AMediaFormat_getFloat(AMediaFormat* format, const char* name, float* out) {
    return getInto(format, name, "float", out);
}

bool AMediaFormat_getDouble(AMediaFormat* format, const char* name, double* out) {
    return getInto(format, name, "double", out);
}

bool AMediaFormat_getSize(AMediaFormat* format, const char* name, size_t* out) {
    Size size{*out};
    const bool found = getInto(format, name, "size", &size);
    *out = size.value;
    return found;
}

bool AMediaFormat_getRect(AMediaFormat* format, const char* name, int32_t* left, int32_t* top,
                          int32_t* right, int32_t* bottom) {
    const Rect* const rect = get<Rect>(format, name, "rect");
    if (rect == nullptr) {
        return false;
    }
    *left = (*rect)[0];
    *top = (*rect)[1];
    *right = (*rect)[2];
    *bottom = (*rect)[3];
    return true;
}

bool AMediaFormat_getBuffer(AMediaFormat* format, const char* name, void** data, size_t* size) {
    const auto* const bytes = get<std::vector<uint8_t>>(format, name, "buffer");
    if (bytes == nullptr) {
        return false;
    }
    *data = const_cast<uint8_t*>(bytes->data());
    *size = bytes->size();
    return true;
}

bool AMediaFormat_getString(AMediaFormat* format, const char* name, const char** out) {
    const std::string* const value = get<std::string>(format, name, "string");
    if (value == nullptr) {
        return false;
    }
    format->fetched = *value;
    *out = format->fetched.c_str();
    return true;
}

void AMediaFormat_setInt32(AMediaFormat* format, const char* name, int32_t value) {
    set(format, name, value);
}

void AMediaFormat_setInt64(AMediaFormat* format, const char* name, int64_t value) {
    set(format, name, value);
}

void AMediaFormat_setFloat(AMediaFormat* format, const char* name, float value) {
    set(format, name, value);
}

void AMediaFormat_setDouble(AMediaFormat* format, const char* name, double value) {
    set(format, name, value);
}

void AMediaFormat_setSize(AMediaFormat* format, const char* name, size_t value) {
    set(format, name, Size{value});
}

void AMediaFormat_setRect(AMediaFormat* format, const char* name, int32_t left, int32_t top,
                          int32_t right, int32_t bottom) {
    set(format, name, Rect{left, top, right, bottom});
}

void AMediaFormat_setString(AMediaFormat* format, const char* name, const char* value) {
    set(format, name, std::string(value));
}

void AMediaFormat_setBuffer(AMediaFormat* format, const char* name, const void* data, size_t size) {
    const auto* const bytes = static_cast<const uint8_t*>(data);
    set(format, name, std::vector<uint8_t>(bytes, bytes + size));
}

void AMediaFormat_clear(AMediaFormat* format) {
    record(Kind::kFormat, "%s: clear", nameOf(format));
    format->entries.clear();
}

media_status_t AMediaFormat_copy(AMediaFormat* to, AMediaFormat* from) {
    record(Kind::kFormat, "%s: copy %s", nameOf(to), nameOf(from));
    if (to == nullptr || from == nullptr) {
        return AMEDIA_ERROR_INVALID_PARAMETER;
    }
    // As on the device, a format that is copied onto itself ends up empty.
    to->entries.clear();
    to->entries.insert(to->entries.end(), from->entries.begin(), from->entries.end());
    return AMEDIA_OK;
}
