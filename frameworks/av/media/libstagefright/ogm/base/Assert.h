// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <log/log.h>

/**
 * Assertions with fixed texts. Crash reports are sorted by these texts, so the location in a text
 * does not follow the actual line. Each ends the process in the same way as the platform's CHECK
 * macros, with the including file's LOG_TAG.
 *
 * docs/behaviour.md lists the assertions that a file can trigger. All other errors of a file are
 * reported as a status.
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

/** Like OGM_CHECK; the two compared integers follow the text. */
#define OGM_CHECK_VALUES(condition, text, lhs, rhs)                                         \
    do {                                                                                    \
        if (!(condition)) {                                                                 \
            __android_log_assert(nullptr, LOG_TAG, "%s%lld vs. %lld", text,                 \
                                 static_cast<long long>(lhs), static_cast<long long>(rhs)); \
        }                                                                                   \
    } while (false)
