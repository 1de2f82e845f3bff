// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>
#include <sys/types.h>

#include <string>
#include <variant>
#include <vector>

#include <media/stagefright/foundation/ABase.h>
#include <media/stagefright/foundation/ABuffer.h>
#include <media/stagefright/foundation/AString.h>
#include <utils/RefBase.h>

namespace android {

/**
 * A list of up to 256 named values in the order of insertion.
 *
 * A setter replaces whatever value the name had and keeps its place; one name too many aborts. A
 * finder gives true only for a value of exactly its type and leaves the output alone otherwise.
 * There is no lock: one message must not be used by two threads at once.
 */
struct AMessage : public RefBase {
    AMessage() = default;

    void setWhat(uint32_t what) { mWhat = what; }
    uint32_t what() const { return mWhat; }

    /** Removes all values, keeps `what`. */
    void clear() { mItems.clear(); }

    void setInt32(const char* name, int32_t value);
    void setInt64(const char* name, int64_t value);
    void setSize(const char* name, size_t value);
    void setFloat(const char* name, float value);
    void setDouble(const char* name, double value);
    void setPointer(const char* name, void* value);
    /** Copies `len` bytes of the text, all of it up to the 0 byte for a negative `len`. */
    void setString(const char* name, const char* s, ssize_t len = -1);
    void setString(const char* name, const AString& s);
    void setObject(const char* name, const sp<RefBase>& obj);
    void setBuffer(const char* name, const sp<ABuffer>& buffer);
    void setMessage(const char* name, const sp<AMessage>& obj);
    void setRect(const char* name, int32_t left, int32_t top, int32_t right, int32_t bottom);

    bool contains(const char* name) const;
    size_t countEntries() const { return mItems.size(); }

    bool findInt32(const char* name, int32_t* value) const;
    bool findInt64(const char* name, int64_t* value) const;
    bool findSize(const char* name, size_t* value) const;
    bool findFloat(const char* name, float* value) const;
    bool findDouble(const char* name, double* value) const;
    bool findPointer(const char* name, void** value) const;
    bool findString(const char* name, AString* value) const;
    bool findObject(const char* name, sp<RefBase>* obj) const;
    bool findBuffer(const char* name, sp<ABuffer>* buffer) const;
    bool findMessage(const char* name, sp<AMessage>* obj) const;
    bool findRect(const char* name, int32_t* left, int32_t* top, int32_t* right,
                  int32_t* bottom) const;

    /** Accepts an int32 as well as an int64. */
    bool findAsInt64(const char* name, int64_t* value) const;

    /** A copy, messages inside it copied too; buffers and objects are shared. */
    sp<AMessage> dup() const;

    /** Sets every value of `other` in this message. */
    void extend(const sp<AMessage>& other);

  protected:
    ~AMessage() override = default;

  private:
    struct Rect {
        int32_t left, top, right, bottom;
    };
    using Value = std::variant<int32_t, int64_t, size_t, float, double, void*, AString, sp<RefBase>,
                               sp<ABuffer>, sp<AMessage>, Rect>;
    struct Item {
        std::string name;
        Value value;
    };

    template <typename T>
    void set(const char* name, T value);
    template <typename T>
    const T* find(const char* name) const;
    template <typename T>
    bool get(const char* name, T* value) const;

    const Item* findItem(const char* name) const;
    Item* findOrAddItem(const char* name);

    uint32_t mWhat = 0;
    std::vector<Item> mItems;

    DISALLOW_EVIL_CONSTRUCTORS(AMessage);
};

}  // namespace android
