// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <log/log.h>

/**
 * Assertions whose texts are behaviour: crash reports are sorted by them, so the location in a text
 * is fixed and does not follow the line of the assertion. Each ends the process by the
 * same path as the platform's CHECK macros, under the including file's LOG_TAG.
 *
 * What a file can cause is otherwise a status; the assertions that a file can reach are listed in
 * docs/behaviour.md.
 */

/** The folder that every text begins with. */
#define OGM_SOURCES "frameworks/av/media/libstagefright/ogm/"

/** Ends the process with `text`. */
#define OGM_TRESPASS(text) __android_log_assert(nullptr, LOG_TAG, "%s", text)

/** Ends the process with `text` unless `condition` holds. */
#define OGM_CHECK(condition, text) \
    do {                           \
        if (!(condition)) {        \
            OGM_TRESPASS(text);    \
        }                          \
    } while (false)

/** As OGM_CHECK; the two integers that were compared follow the text. */
#define OGM_CHECK_VALUES(condition, text, lhs, rhs)                                         \
    do {                                                                                    \
        if (!(condition)) {                                                                 \
            __android_log_assert(nullptr, LOG_TAG, "%s%lld vs. %lld", text,                 \
                                 static_cast<long long>(lhs), static_cast<long long>(rhs)); \
        }                                                                                   \
    } while (false)
