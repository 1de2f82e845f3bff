// SPDX-License-Identifier: Apache-2.0
#include "FormatEntries.h"

#include <string.h>

#include <algorithm>

#include <android/log.h>

namespace android::mediandk {

namespace {

constexpr size_t kMaxNumItems = 256;

// On the device the entries are those of a framework message, whose source fails the assertion.
constexpr char kTooManyItems[] =
        "frameworks/av/media/libstagefright/foundation/AMessage.cpp:210 "
        "CHECK(mItems.size() < kMaxNumItems) failed.";

void checkRoomForOneMore(size_t itemCount) {
    if (itemCount >= kMaxNumItems) {
        __android_log_assert("!(mItems.size() < kMaxNumItems)", "AMessage", "%s", kTooManyItems);
    }
}

/** The text of the key that is the same as `name`; null if none is. */
const char* keyThatReads(const char* name) {
    if (isFormatKey(name)) {
        return name;
    }
    // Zeros between two texts are passed over as empty ones.
    const char* text = __start_ogm_format_keys;
    while (text != __stop_ogm_format_keys && strcmp(text, name) != 0) {
        text += strlen(text) + 1;
    }
    return text != __stop_ogm_format_keys ? text : nullptr;
}

}  // namespace

Buffer::Buffer(const void* data, size_t size) : mBytes(new uint8_t[size]), mSize(size) {
    std::copy_n(static_cast<const uint8_t*>(data), size, mBytes.get());
}

const FormatEntries::Entry* FormatEntries::findText(std::string_view name) const {
    const auto found = std::find_if(mItems.begin(), mItems.end(),
                                    [name](const Entry& entry) { return entry.name == name; });
    return found != mItems.end() ? &*found : nullptr;
}

void FormatEntries::insert(const char* name, Value value) {
    checkRoomForOneMore(mItems.size());
    mItems.push_back({name, keyThatReads(name), std::move(value)});
}

void FormatEntries::extend(const FormatEntries& other) {
    for (const Entry& entry : other.mItems) {
        insertOrReplace(entry.key != nullptr ? entry.key : entry.name.c_str(), entry.value);
    }
}

}  // namespace android::mediandk
