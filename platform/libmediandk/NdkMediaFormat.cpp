// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include <stdlib.h>

#include <map>
#include <memory>
#include <string>

#include "FormatEntries.h"
#include "FormatText.h"

using android::mediandk::Buffer;
using android::mediandk::FormatEntries;
using android::mediandk::Rect;
using android::mediandk::SharedBuffer;

struct AMediaFormat {
    FormatEntries entries;
    // The latest texts that getString() returned, by name. They stay when entries change, so that
    // pointers returned earlier remain valid; a map keeps the texts of other names in place.
    std::map<std::string, std::string> fetchedStrings;
    std::string text;
};

namespace {

template <typename T>
bool get(const AMediaFormat* format, const char* name, T* out) {
    const T* value = format->entries.find<T>(name);
    if (value == nullptr) {
        return false;
    }
    *out = *value;
    return true;
}

}  // namespace

AMediaFormat* AMediaFormat_new() {
    return new AMediaFormat;
}

media_status_t AMediaFormat_delete(AMediaFormat* format) {
    delete format;
    return AMEDIA_OK;
}

const char* AMediaFormat_toString(AMediaFormat* format) {
    format->text = android::mediandk::toText(format->entries);
    return format->text.c_str();
}

bool AMediaFormat_getInt32(AMediaFormat* format, const char* name, int32_t* out) {
    return get(format, name, out);
}

bool AMediaFormat_getInt64(AMediaFormat* format, const char* name, int64_t* out) {
    return get(format, name, out);
}

bool AMediaFormat_getFloat(AMediaFormat* format, const char* name, float* out) {
    return get(format, name, out);
}

bool AMediaFormat_getSize(AMediaFormat* format, const char* name, size_t* out) {
    return get(format, name, out);
}

bool AMediaFormat_getDouble(AMediaFormat* format, const char* name, double* out) {
    return get(format, name, out);
}

bool AMediaFormat_getRect(AMediaFormat* format, const char* name, int32_t* left, int32_t* top,
                          int32_t* right, int32_t* bottom) {
    const Rect* rect = format->entries.find<Rect>(name);
    if (rect == nullptr) {
        return false;
    }
    *left = rect->left;
    *top = rect->top;
    *right = rect->right;
    *bottom = rect->bottom;
    return true;
}

bool AMediaFormat_getBuffer(AMediaFormat* format, const char* name, void** data, size_t* size) {
    const SharedBuffer* buffer = format->entries.find<SharedBuffer>(name);
    if (buffer == nullptr) {
        return false;
    }
    *data = (*buffer)->data();
    *size = (*buffer)->size();
    return true;
}

bool AMediaFormat_getString(AMediaFormat* format, const char* name, const char** out) {
    const std::string* value = format->entries.find<std::string>(name);
    if (value == nullptr) {
        return false;
    }
    std::string& fetched = format->fetchedStrings[name];
    fetched = *value;
    *out = fetched.c_str();
    return true;
}

void AMediaFormat_setInt32(AMediaFormat* format, const char* name, int32_t value) {
    format->entries.set(name, value);
}

void AMediaFormat_setInt64(AMediaFormat* format, const char* name, int64_t value) {
    format->entries.set(name, value);
}

void AMediaFormat_setFloat(AMediaFormat* format, const char* name, float value) {
    format->entries.set(name, value);
}

void AMediaFormat_setSize(AMediaFormat* format, const char* name, size_t value) {
    format->entries.set(name, value);
}

void AMediaFormat_setDouble(AMediaFormat* format, const char* name, double value) {
    format->entries.set(name, value);
}

void AMediaFormat_setRect(AMediaFormat* format, const char* name, int32_t left, int32_t top,
                          int32_t right, int32_t bottom) {
    format->entries.set(name, Rect{left, top, right, bottom});
}

void AMediaFormat_setString(AMediaFormat* format, const char* name, const char* value) {
    if (value == nullptr) {
        abort();
    }
    format->entries.set(name, std::string(value));
}

void AMediaFormat_setBuffer(AMediaFormat* format, const char* name, const void* data, size_t size) {
    format->entries.set(name, SharedBuffer(std::make_shared<const Buffer>(data, size)));
}

void AMediaFormat_clear(AMediaFormat* format) {
    format->entries.clear();
}

media_status_t AMediaFormat_copy(AMediaFormat* to, AMediaFormat* from) {
    if (to == nullptr || from == nullptr) {
        return AMEDIA_ERROR_INVALID_PARAMETER;
    }
    to->entries.clear();
    to->entries.extend(from->entries);
    return AMEDIA_OK;
}
