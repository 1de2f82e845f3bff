// SPDX-License-Identifier: Apache-2.0
#include "PropertyStore.h"

#include <stdlib.h>

#include <algorithm>
#include <mutex>

#include <sys/system_properties.h>

#include "PropertyValues.h"

namespace android::properties {

namespace {

constexpr char kEnvironmentVariable[] = "ANDROID_PROPERTIES";
constexpr std::string_view kEntrySeparators = ";\n";

std::string_view environmentEntries() {
    const char* entries = getenv(kEnvironmentVariable);
    return entries != nullptr ? entries : "";
}

}  // namespace

PropertyStore& PropertyStore::instance() {
    // Never destroyed: messages may still be logged, and levels read, while the program ends.
    static PropertyStore& store = *new PropertyStore(environmentEntries());
    return store;
}

PropertyStore::PropertyStore(std::string_view entries) {
    while (!entries.empty()) {
        const size_t length = std::min(entries.find_first_of(kEntrySeparators), entries.size());
        setEntry(entries.substr(0, length));
        entries.remove_prefix(std::min(length + 1, entries.size()));
    }
}

void PropertyStore::setEntry(std::string_view entry) {
    const size_t nameLength = entry.find('=');
    if (nameLength != std::string_view::npos) {
        set(entry.substr(0, nameLength), entry.substr(nameLength + 1));
    }
}

size_t PropertyStore::read(std::string_view name, char* value) const {
    std::shared_lock<std::shared_mutex> lock(mLock);
    const auto found = mValues.find(name);
    const size_t length =
            found == mValues.end() ? 0 : found->second.copy(value, PROP_VALUE_MAX - 1);
    value[length] = '\0';
    return length;
}

std::vector<std::string> PropertyStore::valuesWithPrefix(std::string_view prefix) const {
    std::vector<std::string> values;
    std::shared_lock<std::shared_mutex> lock(mLock);
    for (auto it = mValues.lower_bound(prefix);
         it != mValues.end() && it->first.compare(0, prefix.size(), prefix) == 0; ++it) {
        values.push_back(it->second);
    }
    return values;
}

bool PropertyStore::set(std::string_view name, std::string_view value) {
    if (name.empty() || value.size() >= PROP_VALUE_MAX) {
        return false;
    }
    std::unique_lock<std::shared_mutex> lock(mLock);
    mValues.insert_or_assign(std::string(name), std::string(value));
    mSerial.fetch_add(1);
    return true;
}

std::vector<std::string> valuesWithPrefix(std::string_view prefix) {
    return PropertyStore::instance().valuesWithPrefix(prefix);
}

}  // namespace android::properties
