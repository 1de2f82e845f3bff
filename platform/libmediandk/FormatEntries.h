// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
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
        /** The address by which the entry was set, if that is a key's; else null. */
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
        if (Entry* const entry = findEntry(name)) {
            entry->value = std::move(value);
        } else {
            insert(name, std::move(value));
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
        bool hasOtherNames = false;
        for (const Entry& entry : mItems) {
            if (entry.key == name) {
                return &entry;
            }
            hasOtherNames |= entry.key == nullptr;
        }
        return hasOtherNames ? findText(name) : nullptr;
    }
    Entry* findEntry(const char* name) {
        return const_cast<Entry*>(std::as_const(*this).findEntry(name));
    }
    const Entry* findText(const char* name) const;
    void insert(const char* name, Value value);

    std::vector<Entry> mItems;
};

}  // namespace android::mediandk
