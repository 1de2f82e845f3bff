/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * System properties: short named texts that configure the system from outside.
 *
 * The properties of this library belong to the process. They start out with what the environment
 * variable ANDROID_PROPERTIES holds when a property is first used, and property_set() changes them
 * from then on. The variable lists entries `name=value`, separated by semicolons or line ends:
 *
 *     ANDROID_PROPERTIES='log.tag.Example=D;example.limit=0x10'
 *
 * Blanks are part of the name or value they touch. The first '=' ends the name; of two entries with
 * one name the later applies. Entries that property_set() would refuse, and those without '=', are
 * ignored.
 *
 * Names are compared exactly and have no greatest length. All functions may be called from several
 * threads at once and leave errno as it was.
 */

#include <stdint.h>

#include <sys/system_properties.h>

/** Size of a buffer that holds any value, the final zero included. */
#define PROPERTY_VALUE_MAX PROP_VALUE_MAX

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/**
 * Copies a property's value, or `default_value` cut at 91 characters if the property is absent or
 * empty, into `value`, which must have room for PROPERTY_VALUE_MAX bytes. A null default means "".
 * Returns the length of what was copied.
 */
int property_get(const char* key, char* value, const char* default_value)
#if defined(__clang__) && defined(_FORTIFY_SOURCE) && _FORTIFY_SOURCE > 0
        __attribute__((diagnose_if(__builtin_object_size(value, 1) < PROPERTY_VALUE_MAX,
                                   "the value needs room for PROPERTY_VALUE_MAX bytes", "error")))
#endif
        ;

/**
 * Returns the property as a truth value: "1", "y", "yes", "true" and "on" are 1; "0", "n", "no",
 * "false" and "off" are 0; anything else, a null key too, is `default_value`.
 */
int8_t property_get_bool(const char* key, int8_t default_value);

/**
 * Returns the property as a number in C notation: white space and a sign may precede it, "0x" makes
 * it hexadecimal, a leading "0" octal, and whatever follows the digits is ignored. Returns
 * `default_value` if the key is null or the property is absent, holds no number, or one out of
 * range.
 */
int32_t property_get_int32(const char* key, int32_t default_value);

/** As property_get_int32(), in the range of 64 bits. */
int64_t property_get_int64(const char* key, int64_t default_value);

/**
 * Sets a property; a null value means "". Returns 0, or -1 if the name is null or empty or the
 * value does not fit into PROPERTY_VALUE_MAX bytes; the property then stays as it was.
 */
int property_set(const char* key, const char* value);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
