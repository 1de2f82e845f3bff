// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include "ErrnoRestorer.h"
#include "PropertyStore.h"

using android::ErrnoRestorer;
using android::properties::PropertyStore;

int property_set(const char* key, const char* value) {
    if (key == nullptr) {
        return -1;
    }
    const ErrnoRestorer restorer;
    return PropertyStore::instance().set(key, value != nullptr ? value : "") ? 0 : -1;
}
