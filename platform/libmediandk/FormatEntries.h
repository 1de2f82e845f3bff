// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

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
        Value value;
    };

    /** The value of that name if it has that very type, else null. Every change invalidates it. */
    template <typename T>
    const T* find(std::string_view name) const {
        const Entry* const entry = findEntry(name);
        return entry != nullptr ? std::get_if<T>(&entry->value) : nullptr;
    }

    /** Inserts or replaces. Does not return if there are too many entries already. */
    template <typename T>
    void set(std::string_view name, T value) {
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
    static bool hasName(const Entry& entry, std::string_view name) {
        return entry.name.size() == name.size() &&
               memcmp(entry.name.data(), name.data(), name.size()) == 0;
    }

    const Entry* findEntry(std::string_view name) const {
        for (const Entry& entry : mItems) {
            if (hasName(entry, name)) {
                return &entry;
            }
        }
        return nullptr;
    }
    Entry* findEntry(std::string_view name) {
        return const_cast<Entry*>(std::as_const(*this).findEntry(name));
    }
    void insert(std::string_view name, Value value);

    std::vector<Entry> mItems;
};

}  // namespace android::mediandk
