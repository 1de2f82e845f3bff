// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <stddef.h>

#include <gtest/gtest.h>

static_assert(ANDROID_LOG_UNKNOWN == 0);
static_assert(ANDROID_LOG_DEFAULT == 1);
static_assert(ANDROID_LOG_VERBOSE == 2);
static_assert(ANDROID_LOG_DEBUG == 3);
static_assert(ANDROID_LOG_INFO == 4);
static_assert(ANDROID_LOG_WARN == 5);
static_assert(ANDROID_LOG_ERROR == 6);
static_assert(ANDROID_LOG_FATAL == 7);
static_assert(ANDROID_LOG_SILENT == 8);

static_assert(LOG_ID_MAIN == 0);
static_assert(LOG_ID_RADIO == 1);
static_assert(LOG_ID_EVENTS == 2);
static_assert(LOG_ID_SYSTEM == 3);
static_assert(LOG_ID_CRASH == 4);
static_assert(LOG_ID_STATS == 5);
static_assert(LOG_ID_SECURITY == 6);
static_assert(LOG_ID_KERNEL == 7);
static_assert(LOG_ID_DEFAULT == 0x7FFFFFFF);

#ifdef __LP64__
static_assert(sizeof(__android_log_message) == 48);
static_assert(offsetof(__android_log_message, struct_size) == 0);
static_assert(offsetof(__android_log_message, buffer_id) == 8);
static_assert(offsetof(__android_log_message, priority) == 12);
static_assert(offsetof(__android_log_message, tag) == 16);
static_assert(offsetof(__android_log_message, file) == 24);
static_assert(offsetof(__android_log_message, line) == 32);
static_assert(offsetof(__android_log_message, message) == 40);
#endif

namespace {

TEST(LogHeaderTest, TheFunctionsHaveTheirDocumentedTypes) {
    int (*write)(int, const char*, const char*) = __android_log_write;
    int (*print)(int, const char*, const char*, ...) = __android_log_print;
    int (*vprint)(int, const char*, const char*, va_list) = __android_log_vprint;
    int (*bufWrite)(int, int, const char*, const char*) = __android_log_buf_write;
    int (*bufPrint)(int, int, const char*, const char*, ...) = __android_log_buf_print;
    void (*assertFailed)(const char*, const char*, const char*, ...) = __android_log_assert;
    int (*isLoggable)(int, const char*, int) = __android_log_is_loggable;
    int (*isLoggableLen)(int, const char*, size_t, int) = __android_log_is_loggable_len;
    int32_t (*setMinimum)(int32_t) = __android_log_set_minimum_priority;
    int32_t (*getMinimum)() = __android_log_get_minimum_priority;
    void (*setLogger)(__android_logger_function) = __android_log_set_logger;
    __android_logger_function logd = __android_log_logd_logger;
    __android_logger_function toStderr = __android_log_stderr_logger;
    void (*writeMessage)(struct __android_log_message*) = __android_log_write_log_message;
    void (*setAborter)(__android_aborter_function) = __android_log_set_aborter;
    __android_aborter_function callAborter = __android_log_call_aborter;
    __android_aborter_function defaultAborter = __android_log_default_aborter;
    void (*setTag)(const char*) = __android_log_set_default_tag;
    for (const bool present :
         {write != nullptr, print != nullptr, vprint != nullptr, bufWrite != nullptr,
          bufPrint != nullptr, assertFailed != nullptr, isLoggable != nullptr,
          isLoggableLen != nullptr, setMinimum != nullptr, getMinimum != nullptr,
          setLogger != nullptr, logd != nullptr, toStderr != nullptr, writeMessage != nullptr,
          setAborter != nullptr, callAborter != nullptr, defaultAborter != nullptr,
          setTag != nullptr}) {
        EXPECT_TRUE(present);
    }
}

}  // namespace
