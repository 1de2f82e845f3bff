/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * The layer below <cutils/properties.h>, part of the C library on the device. The log library reads
 * its levels with these functions, so a program with its own property_get() does not see the reads.
 */

#include <stdint.h>

/** Size of a buffer for any value, including the final zero. */
#define PROP_VALUE_MAX 92

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Copies a property's value, or "" if it is absent, into `value`, which must have room for
 * PROP_VALUE_MAX bytes. Returns the length of the copied text.
 */
int __system_property_get(const char* name, char* value);

/** A number that changes with every change of a property. */
uint32_t __system_property_area_serial(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
