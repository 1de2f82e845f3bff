/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * System properties: short named texts that configure the system from outside.
 *
 * The properties of this library belong to the process. Their initial values are read from the
 * environment variable ANDROID_PROPERTIES when a property is first used; property_set() changes
 * them. The variable has entries `name=value`, separated by semicolons or line ends:
 *
 *     ANDROID_PROPERTIES='log.tag.Example=D;example.limit=0x10'
 *
 * Blanks are part of the name or value. The first '=' ends the name. If two entries have the same
 * name, the later one applies. Entries without '=' are ignored, and so are those that
 * property_set() would refuse.
 *
 * Names are compared exactly and may have any length. All functions may be called from several
 * threads at the same time; they do not change errno.
 */

#include <stdint.h>

#include <sys/system_properties.h>

/** Size of a buffer for any value, including the final zero. */
#define PROPERTY_VALUE_MAX PROP_VALUE_MAX

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Copies a property's value into `value`, which must have room for PROPERTY_VALUE_MAX bytes. If the
 * property is absent or empty, copies `default_value`, cut at 91 characters; a null default means
 * "". Returns the length of the copied text.
 */
int property_get(const char* key, char* value, const char* default_value)
#if defined(__clang__) && defined(_FORTIFY_SOURCE) && _FORTIFY_SOURCE > 0
        __attribute__((diagnose_if(__builtin_object_size(value, 1) < PROPERTY_VALUE_MAX,
                                   "the value needs room for PROPERTY_VALUE_MAX bytes", "error")))
#endif
        ;

/**
 * Returns the property as a truth value: "1", "y", "yes", "true" and "on" are 1; "0", "n", "no",
 * "false" and "off" are 0. Returns `default_value` for any other value and for a null key.
 */
int8_t property_get_bool(const char* key, int8_t default_value);

/**
 * Returns the property as a number in C notation: white space and a sign may precede it, "0x" makes
 * it hexadecimal, a leading "0" octal, and anything after the digits is ignored. Returns
 * `default_value` if the key is null, or if the property is absent, is not a number, or is out of
 * range.
 */
int32_t property_get_int32(const char* key, int32_t default_value);

/** Like property_get_int32(), with the range of 64 bits. */
int64_t property_get_int64(const char* key, int64_t default_value);

/**
 * Sets a property; a null value means "". Returns 0; or -1, without a change, if the name is null
 * or empty or the value does not fit into PROPERTY_VALUE_MAX bytes.
 */
int property_set(const char* key, const char* value);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
