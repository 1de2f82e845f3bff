// SPDX-License-Identifier: Apache-2.0
#include <sys/system_properties.h>

#include "ErrnoRestorer.h"
#include "PropertyStore.h"

int __system_property_get(const char* name, char* value) {
    const android::ErrnoRestorer restorer;
    return static_cast<int>(android::properties::PropertyStore::instance().read(name, value));
}

uint32_t __system_property_area_serial() {
    return android::properties::PropertyStore::instance().serial();
}
