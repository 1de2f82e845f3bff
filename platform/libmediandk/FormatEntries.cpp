// SPDX-License-Identifier: Apache-2.0
#include "FormatEntries.h"

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

}  // namespace

Buffer::Buffer(const void* data, size_t size) : mBytes(new uint8_t[size]), mSize(size) {
    std::copy_n(static_cast<const uint8_t*>(data), size, mBytes.get());
}

const FormatEntries::Entry* FormatEntries::findText(const char* name) const {
    const auto found = std::find_if(mItems.begin(), mItems.end(),
                                    [name](const Entry& entry) { return entry.name == name; });
    return found != mItems.end() ? &*found : nullptr;
}

void FormatEntries::insert(const char* name, Value value) {
    checkRoomForOneMore(mItems.size());
    mItems.push_back({name, isFormatKey(name) ? name : nullptr, std::move(value)});
}

void FormatEntries::extend(const FormatEntries& other) {
    for (const Entry& entry : other.mItems) {
        set(entry.key != nullptr ? entry.key : entry.name.c_str(), entry.value);
    }
}

}  // namespace android::mediandk
