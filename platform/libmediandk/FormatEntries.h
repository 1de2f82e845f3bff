// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "FormatKeys.h"

namespace android::mediandk {

struct Rect {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

/** Bytes of an entry. Even an empty one has an address that is not null. */
class Buffer {
  public:
    Buffer(const void* data, size_t size);

    uint8_t* data() const { return mBytes.get(); }
    size_t size() const { return mSize; }

  private:
    std::unique_ptr<uint8_t[]> mBytes;
    size_t mSize;
};

using SharedBuffer = std::shared_ptr<const Buffer>;
using Value =
        std::variant<int32_t, int64_t, size_t, float, double, std::string, SharedBuffer, Rect>;

/**
 * Named values in the order in which their names first appeared. Copying an entry shares the bytes
 * of a buffer and copies everything else.
 */
class FormatEntries {
  public:
    struct Entry {
        std::string name;
        /** The key that reads like the name; null if none does. */
        const char* key;
        Value value;
    };

    /** The value of that name if it has that very type, else null. Every change invalidates it. */
    template <typename T>
    const T* find(const char* name) const {
        const Entry* const entry = findEntry(name);
        return entry != nullptr ? std::get_if<T>(&entry->value) : nullptr;
    }

    /** Inserts or replaces. Does not return if there are too many entries already. */
    template <typename T>
    void set(const char* name, T value) {
        if (const T* const present = find<T>(name)) {
            *const_cast<T*>(present) = std::move(value);
        } else {
            insertOrReplace(name, std::move(value));
        }
    }

    void clear() { mItems.clear(); }

    /** Sets every entry of `other`. */
    void extend(const FormatEntries& other);

    const std::vector<Entry>& items() const { return mItems; }

  private:
    // Most names are keys, which need no comparison of texts: a buffer's entries are looked up
    // several times in each read.
    const Entry* findEntry(const char* name) const {
        if (!isFormatKey(name)) {
            return findText(name);
        }
        for (const Entry& entry : mItems) {
            if (entry.key == name) {
                return &entry;
            }
        }
        return nullptr;
    }
    const Entry* findText(std::string_view name) const;

    // Apart, so that a value is replaced without room for a new entry.
    template <typename T>
    __attribute__((__noinline__)) void insertOrReplace(const char* name, T value) {
        if (const Entry* const entry = findEntry(name)) {
            const_cast<Entry*>(entry)->value = std::move(value);
        } else {
            insert(name, std::move(value));
        }
    }
    void insert(const char* name, Value value);

    std::vector<Entry> mItems;
};

}  // namespace android::mediandk
