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

namespace android::mediandk {

struct Rect {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

/** Bytes of an entry. The pointer is non-null even for an empty one. */
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
 * Named values, in the order in which their names were first set. A copied entry shares the bytes
 * of a buffer; everything else is copied.
 */
class FormatEntries {
  public:
    struct Entry {
        std::string name;
        Value value;
    };

    /**
     * Returns the value with this name if it has exactly this type, otherwise null. Any change of
     * the entries invalidates it.
     */
    template <typename T>
    const T* find(std::string_view name) const {
        const size_t index = indexOf(name);
        return index < mItems.size() ? std::get_if<T>(&mItems[index].value) : nullptr;
    }

    /** Inserts or replaces an entry. Aborts if there are too many. */
    template <typename T>
    void set(std::string_view name, T value) {
        findOrInsert(name) = std::move(value);
    }

    void clear() { mItems.clear(); }

    /** Sets every entry of `other`. */
    void extend(const FormatEntries& other);

    const std::vector<Entry>& items() const { return mItems; }

  private:
    /** Returns the index of the entry; the number of entries if none has this name. */
    size_t indexOf(std::string_view name) const;
    Value& findOrInsert(std::string_view name);

    std::vector<Entry> mItems;
};

}  // namespace android::mediandk
