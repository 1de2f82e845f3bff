// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/AMessage.h>

#include <utility>

#include "LibraryAssert.h"

namespace android {

namespace {

constexpr size_t kMaxNumItems = 256;

}  // namespace

const AMessage::Item* AMessage::findItem(const char* name) const {
    for (const Item& item : mItems) {
        if (item.name == name) {
            return &item;
        }
    }
    return nullptr;
}

AMessage::Item* AMessage::findOrAddItem(const char* name) {
    if (const Item* item = findItem(name)) {
        return const_cast<Item*>(item);
    }
    if (mItems.size() >= kMaxNumItems) {
        checkFailed({"AMessage", "AMessage.cpp:210", "CHECK(mItems.size() < kMaxNumItems)"});
    }
    mItems.push_back(Item{name, Value()});
    return &mItems.back();
}

template <typename T>
void AMessage::set(const char* name, T value) {
    findOrAddItem(name)->value.emplace<T>(std::move(value));
}

template <typename T>
const T* AMessage::find(const char* name) const {
    const Item* item = findItem(name);
    return item != nullptr ? std::get_if<T>(&item->value) : nullptr;
}

template <typename T>
bool AMessage::get(const char* name, T* value) const {
    const T* found = find<T>(name);
    if (found == nullptr) {
        return false;
    }
    *value = *found;
    return true;
}

void AMessage::setInt32(const char* name, int32_t value) {
    set(name, value);
}

void AMessage::setInt64(const char* name, int64_t value) {
    set(name, value);
}

void AMessage::setSize(const char* name, size_t value) {
    set(name, value);
}

void AMessage::setFloat(const char* name, float value) {
    set(name, value);
}

void AMessage::setDouble(const char* name, double value) {
    set(name, value);
}

void AMessage::setPointer(const char* name, void* value) {
    set(name, value);
}

void AMessage::setString(const char* name, const char* s, ssize_t len) {
    set(name, len < 0 ? AString(s) : AString(s, static_cast<size_t>(len)));
}

void AMessage::setString(const char* name, const AString& s) {
    set(name, s);
}

void AMessage::setObject(const char* name, const sp<RefBase>& obj) {
    set(name, obj);
}

void AMessage::setBuffer(const char* name, const sp<ABuffer>& buffer) {
    set(name, buffer);
}

void AMessage::setMessage(const char* name, const sp<AMessage>& obj) {
    set(name, obj);
}

void AMessage::setRect(const char* name, int32_t left, int32_t top, int32_t right, int32_t bottom) {
    set(name, Rect{left, top, right, bottom});
}

bool AMessage::contains(const char* name) const {
    return findItem(name) != nullptr;
}

bool AMessage::findInt32(const char* name, int32_t* value) const {
    return get(name, value);
}

bool AMessage::findInt64(const char* name, int64_t* value) const {
    return get(name, value);
}

bool AMessage::findSize(const char* name, size_t* value) const {
    return get(name, value);
}

bool AMessage::findFloat(const char* name, float* value) const {
    return get(name, value);
}

bool AMessage::findDouble(const char* name, double* value) const {
    return get(name, value);
}

bool AMessage::findPointer(const char* name, void** value) const {
    return get(name, value);
}

bool AMessage::findString(const char* name, AString* value) const {
    return get(name, value);
}

bool AMessage::findObject(const char* name, sp<RefBase>* obj) const {
    return get(name, obj);
}

bool AMessage::findBuffer(const char* name, sp<ABuffer>* buffer) const {
    return get(name, buffer);
}

bool AMessage::findMessage(const char* name, sp<AMessage>* obj) const {
    return get(name, obj);
}

bool AMessage::findRect(const char* name, int32_t* left, int32_t* top, int32_t* right,
                        int32_t* bottom) const {
    const Rect* rect = find<Rect>(name);
    if (rect == nullptr) {
        return false;
    }
    *left = rect->left;
    *top = rect->top;
    *right = rect->right;
    *bottom = rect->bottom;
    return true;
}

bool AMessage::findAsInt64(const char* name, int64_t* value) const {
    if (const int32_t* narrow = find<int32_t>(name)) {
        *value = *narrow;
        return true;
    }
    return findInt64(name, value);
}

sp<AMessage> AMessage::dup() const {
    sp<AMessage> copy = new AMessage;
    copy->mWhat = mWhat;
    copy->mItems = mItems;
    for (Item& item : copy->mItems) {
        sp<AMessage>* inner = std::get_if<sp<AMessage>>(&item.value);
        if (inner != nullptr && *inner != nullptr) {
            *inner = (*inner)->dup();
        }
    }
    return copy;
}

void AMessage::extend(const sp<AMessage>& other) {
    for (const Item& item : other->mItems) {
        findOrAddItem(item.name.c_str())->value = item.value;
    }
}

}  // namespace android
