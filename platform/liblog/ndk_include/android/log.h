/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * The log as a C interface. A message has a priority, a tag that names its source, and a text.
 *
 * A print function first checks priority and tag. Only a message at or above the tag's level
 * passes: it is formatted and passed to the process's logger. The level is the first letter (V, D,
 * I, W, E, F or A, S) of the first of these properties that exists: persist.log.tag.TAG,
 * log.tag.TAG, persist.log.tag, log.tag. If there is also a minimum priority, the lower of the two
 * applies. If there is neither, the caller's default applies, which is VERBOSE for the print
 * functions.
 *
 * All functions may be called from several threads at once. Texts passed in are copied or used
 * before the call returns. A null tag means the default tag.
 */

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef enum android_LogPriority {
    ANDROID_LOG_UNKNOWN = 0,
    ANDROID_LOG_DEFAULT,
    ANDROID_LOG_VERBOSE,
    ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO,
    ANDROID_LOG_WARN,
    ANDROID_LOG_ERROR,
    ANDROID_LOG_FATAL,
    ANDROID_LOG_SILENT,
} android_LogPriority;

/** The device's log buffers. */
typedef enum log_id {
    LOG_ID_MIN = 0,
    LOG_ID_MAIN = 0,
    LOG_ID_RADIO = 1,
    LOG_ID_EVENTS = 2,
    LOG_ID_SYSTEM = 3,
    LOG_ID_CRASH = 4,
    LOG_ID_STATS = 5,
    LOG_ID_SECURITY = 6,
    LOG_ID_KERNEL = 7,
    LOG_ID_MAX,
    /** The logger's choice, for messages that name no buffer. */
    LOG_ID_DEFAULT = 0x7FFFFFFF,
} log_id_t;

/** A message for a logger. The texts are only valid during the logger's call. */
struct __android_log_message {
    /** sizeof(struct __android_log_message). */
    size_t struct_size;
    /** One of log_id_t. */
    int32_t buffer_id;
    /** One of android_LogPriority. */
    int32_t priority;
    const char* tag;
    /** Source of the message, or null; `line` is used only with a file. */
    const char* file;
    uint32_t line;
    const char* message;
};

typedef void (*__android_logger_function)(const struct __android_log_message* log_message);
typedef void (*__android_aborter_function)(const char* abort_message);

/** Logs `text` uncut. Returns 1, or -EPERM if it may not pass. */
int __android_log_write(int prio, const char* tag, const char* text);

/**
 * Logs a formatted text, cut at 1023 bytes. Returns 1, or -EPERM, without reading the format, if it
 * may not pass. errno stays unchanged, and `%m` prints the caller's.
 */
int __android_log_print(int prio, const char* tag, const char* fmt, ...)
        __attribute__((__format__(printf, 3, 4)));

/** Like __android_log_print(), with an argument list. */
int __android_log_vprint(int prio, const char* tag, const char* fmt, va_list ap)
        __attribute__((__format__(printf, 3, 0)));

/** Like __android_log_write(), for one of the log buffers. */
int __android_log_buf_write(int bufID, int prio, const char* tag, const char* text);

/** Like __android_log_print(), for one of the log buffers. */
int __android_log_buf_print(int bufID, int prio, const char* tag, const char* fmt, ...)
        __attribute__((__format__(printf, 4, 5)));

/**
 * Ends the process after a failed assertion. The text is the formatted message, or, if `fmt` is
 * null, contains `cond`, which may be null too. It is cut at 1023 bytes, written to file descriptor
 * 2 as a line without a prefix, logged as fatal, and passed to the aborter. If the aborter returns,
 * abort() is called.
 */
void __android_log_assert(const char* cond, const char* tag, const char* fmt, ...)
        __attribute__((__noreturn__)) __attribute__((__format__(printf, 3, 4)));

/** Returns 1 if a message of this priority and tag may pass, else 0. */
int __android_log_is_loggable(int prio, const char* tag, int default_prio);

/** Like __android_log_is_loggable(), for a tag of `len` bytes without a final zero. */
int __android_log_is_loggable_len(int prio, const char* tag, size_t len, int default_prio);

/** Sets the minimum priority, ANDROID_LOG_DEFAULT for none, and returns the previous one. */
int32_t __android_log_set_minimum_priority(int32_t priority);

/** Returns the minimum priority, ANDROID_LOG_DEFAULT if none is set. */
int32_t __android_log_get_minimum_priority(void);

/** Sets the tag that replaces a null one, initially the program's name. Not null. */
void __android_log_set_default_tag(const char* tag);

/** Sets the logger of the whole process, initially __android_log_logd_logger(). Not null. */
void __android_log_set_logger(__android_logger_function logger);

/**
 * The default logger. On a device it writes to the log service; here it is the same as
 * __android_log_stderr_logger().
 */
void __android_log_logd_logger(const struct __android_log_message* log_message);

/** Writes the message as one line with time, process and thread to standard error. */
void __android_log_stderr_logger(const struct __android_log_message* log_message);

/**
 * Passes a message to the logger without checking its priority and tag. Messages for buffers other
 * than main, radio, system, crash and default are dropped. errno stays unchanged.
 */
void __android_log_write_log_message(struct __android_log_message* log_message);

/**
 * Sets what __android_log_call_aborter() calls, initially __android_log_default_aborter(). Not
 * null.
 */
void __android_log_set_aborter(__android_aborter_function aborter);

/** Calls the aborter. Returns if the aborter does. */
void __android_log_call_aborter(const char* abort_message);

/** Calls abort(). */
void __android_log_default_aborter(const char* abort_message) __attribute__((__noreturn__));

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
