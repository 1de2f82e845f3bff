// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace android::properties {

/** The properties of this process. Every member function may be called from any thread. */
class PropertyStore {
  public:
    /** Returns the only store; the first call reads the environment. */
    static PropertyStore& instance();

    /**
     * Copies the value of `name` with a final zero into `value`, which has room for PROP_VALUE_MAX
     * bytes; "" if there is none. Returns its length.
     */
    size_t read(std::string_view name, char* value) const;

    /** Returns the values of all properties whose names begin with `prefix`. */
    std::vector<std::string> valuesWithPrefix(std::string_view prefix) const;

    /** Sets a property; returns false if the name is empty or the value too long. */
    bool set(std::string_view name, std::string_view value);

    /**
     * Returns how often properties have been set. A property that is read afterwards is at least as
     * new as this number.
     */
    uint32_t serial() const { return mSerial.load(); }

  private:
    explicit PropertyStore(std::string_view entries);
    void setEntry(std::string_view entry);

    std::atomic<uint32_t> mSerial{0};
    mutable std::shared_mutex mLock;
    std::map<std::string, std::string, std::less<>> mValues;
};

}  // namespace android::properties
