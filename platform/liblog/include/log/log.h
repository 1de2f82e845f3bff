/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * Log macros for sources that log with a single tag:
 *
 *     #define LOG_TAG "Example"
 *     #include <log/log.h>
 *     ...
 *     ALOGW("%d pages skipped", skipped);
 *
 * Define LOG_TAG before this header is first included, directly or through another header.
 * Otherwise it is NULL, which means the default tag.
 *
 * With LOG_NDEBUG set to 1, the default when NDEBUG is defined, verbose messages and LOG_FATAL_IF,
 * LOG_FATAL and ALOG_ASSERT produce no call. LOG_ALWAYS_FATAL_IF and LOG_ALWAYS_FATAL always do.
 */

#include <stddef.h>

#include <android/log.h>

#ifndef LOG_NDEBUG
#ifdef NDEBUG
#define LOG_NDEBUG 1
#else
#define LOG_NDEBUG 0
#endif
#endif

#ifndef LOG_TAG
#define LOG_TAG NULL
#endif

/** Logs with one of the values of android_LogPriority. */
#define LOG_PRI(priority, tag, ...) ((void)__android_log_print(priority, tag, __VA_ARGS__))

/** Logs with a priority named without its prefix, as in ALOG(LOG_INFO, "Example", "text"). */
#define ALOG(priority, tag, ...) LOG_PRI(ANDROID_##priority, tag, __VA_ARGS__)

#define ALOGD(...) ALOG(LOG_DEBUG, LOG_TAG, __VA_ARGS__)
#define ALOGI(...) ALOG(LOG_INFO, LOG_TAG, __VA_ARGS__)
#define ALOGW(...) ALOG(LOG_WARN, LOG_TAG, __VA_ARGS__)
#define ALOGE(...) ALOG(LOG_ERROR, LOG_TAG, __VA_ARGS__)

#define ALOGD_IF(cond, ...) ((cond) ? ALOGD(__VA_ARGS__) : (void)0)
#define ALOGI_IF(cond, ...) ((cond) ? ALOGI(__VA_ARGS__) : (void)0)
#define ALOGW_IF(cond, ...) ((cond) ? ALOGW(__VA_ARGS__) : (void)0)
#define ALOGE_IF(cond, ...) ((cond) ? ALOGE(__VA_ARGS__) : (void)0)

/* The arguments are always compiled, even if nothing is logged, so that errors in them are found.
 */
#if LOG_NDEBUG
#define ALOGV(...) (0 ? ALOG(LOG_VERBOSE, LOG_TAG, __VA_ARGS__) : (void)0)
#define ALOGV_IF(cond, ...) (0 && (cond) ? ALOG(LOG_VERBOSE, LOG_TAG, __VA_ARGS__) : (void)0)
#else
#define ALOGV(...) ALOG(LOG_VERBOSE, LOG_TAG, __VA_ARGS__)
#define ALOGV_IF(cond, ...) ((cond) ? ALOGV(__VA_ARGS__) : (void)0)
#endif

/* The message of an assertion is optional: without one the format is null. */
#define ANDROID_LOG_ASSERT_FIRST(first, ...) first
#define ANDROID_LOG_ASSERT_REST(first, ...) , ##__VA_ARGS__
#define ANDROID_LOG_ASSERT_FORMAT(unused, ...) ANDROID_LOG_ASSERT_FIRST(__VA_ARGS__)
#define ANDROID_LOG_ASSERT(condition, ...)                                 \
    __android_log_assert(condition, LOG_TAG,                               \
                         ANDROID_LOG_ASSERT_FORMAT(0, ##__VA_ARGS__, NULL) \
                                 ANDROID_LOG_ASSERT_REST(__VA_ARGS__))

/** Ends the process if the condition holds; logs the message, or the condition if there is none. */
#define LOG_ALWAYS_FATAL_IF(cond, ...) ((cond) ? ANDROID_LOG_ASSERT(#cond, ##__VA_ARGS__) : (void)0)

/** Ends the process. */
#define LOG_ALWAYS_FATAL(...) ANDROID_LOG_ASSERT(NULL, ##__VA_ARGS__)

#if LOG_NDEBUG
#define LOG_FATAL_IF(cond, ...) ((void)0)
#define LOG_FATAL(...) ((void)0)
#else
#define LOG_FATAL_IF(cond, ...) LOG_ALWAYS_FATAL_IF(cond, ##__VA_ARGS__)
#define LOG_FATAL(...) LOG_ALWAYS_FATAL(__VA_ARGS__)
#endif

/** Ends the process, except where LOG_NDEBUG is 1, unless the condition holds. */
#define ALOG_ASSERT(cond, ...) LOG_FATAL_IF(!(cond), ##__VA_ARGS__)
