// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cutils/properties.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace android::ogm::test {

/** Sets a system property during its lifetime. */
class ScopedProperty {
  public:
    ScopedProperty(std::string name, const std::string& value) : mName(std::move(name)) {
        char before[PROPERTY_VALUE_MAX];
        property_get(mName.c_str(), before, "");
        mBefore = before;
        set(value);
    }
    // An empty value is the same as an absent property, so this also removes a new property.
    ~ScopedProperty() { property_set(mName.c_str(), mBefore.c_str()); }
    ScopedProperty(const ScopedProperty&) = delete;
    ScopedProperty& operator=(const ScopedProperty&) = delete;

  private:
    void set(const std::string& value) {
        if (property_set(mName.c_str(), value.c_str()) != 0) {
            throw std::runtime_error("cannot set the property " + mName);
        }
    }

    std::string mName;
    std::string mBefore;
};

}  // namespace android::ogm::test
