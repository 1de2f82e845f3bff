// SPDX-License-Identifier: Apache-2.0
#include "FormatEntries.h"

#include <algorithm>

#include <android/log.h>

namespace android::mediandk {

namespace {

constexpr size_t kMaxNumItems = 256;

// On the device the entries are those of a framework message, so the assertion is in that source.
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

size_t FormatEntries::indexOf(std::string_view name) const {
    const auto found = std::find_if(mItems.begin(), mItems.end(),
                                    [name](const Entry& entry) { return entry.name == name; });
    return static_cast<size_t>(found - mItems.begin());
}

Value& FormatEntries::findOrInsert(std::string_view name) {
    const size_t index = indexOf(name);
    if (index == mItems.size()) {
        checkRoomForOneMore(mItems.size());
        mItems.push_back({std::string(name), Value()});
    }
    return mItems[index].value;
}

void FormatEntries::extend(const FormatEntries& other) {
    for (const Entry& entry : other.mItems) {
        findOrInsert(entry.name) = entry.value;
    }
}

}  // namespace android::mediandk
