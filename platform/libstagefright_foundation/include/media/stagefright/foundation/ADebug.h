// SPDX-License-Identifier: Apache-2.0
#pragma once

// Assertions for what only a mistake in the program can cause. They stay in release builds, write
// the failed condition with its place to stderr and to the log, under the LOG_TAG of the file that
// contains them, and end the process.
//
//     CHECK(!list.empty());
//     CHECK_GE(timeUs, 0ll);      // also prints the two values
//     TRESPASS("type %d", type);  // a place that must not be reached
//
// Keep each on one source line: compilers disagree about the number of a call that spans several.
// The comparing forms bind their operands to references named `a` and `b`, so operands must not
// use these names. Operands are evaluated once and printed by AString::append().

#include <media/stagefright/foundation/ABase.h>
#include <media/stagefright/foundation/AString.h>
#include <utils/Log.h>

#ifndef CHECK_OP

namespace android {

// The caller's operands may differ in signedness, as in CHECK_EQ(reader.getBits(8), 71): they are
// compared by the rules of the language, without a warning about it.
namespace adebug {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-compare"
template <typename X, typename Y>
bool holds_EQ(const X& x, const Y& y) {
    return x == y;
}
template <typename X, typename Y>
bool holds_NE(const X& x, const Y& y) {
    return x != y;
}
template <typename X, typename Y>
bool holds_LE(const X& x, const Y& y) {
    return x <= y;
}
template <typename X, typename Y>
bool holds_LT(const X& x, const Y& y) {
    return x < y;
}
template <typename X, typename Y>
bool holds_GE(const X& x, const Y& y) {
    return x >= y;
}
template <typename X, typename Y>
bool holds_GT(const X& x, const Y& y) {
    return x > y;
}
#pragma GCC diagnostic pop

/** Completes the text of a failed comparison with the two values. */
template <typename X, typename Y>
AString withValues(const char* text, const X& x, const Y& y) {
    AString full(text);
    full.append(x);
    full.append(" vs. ");
    full.append(y);
    return full;
}

}  // namespace adebug

}  // namespace android

#define LITERAL_TO_STRING_INTERNAL(x) #x
#define LITERAL_TO_STRING(x) LITERAL_TO_STRING_INTERNAL(x)
#define ADEBUG_PLACE __FILE__ ":" LITERAL_TO_STRING(__LINE__)

#define CHECK(condition)                                                        \
    (__builtin_expect(!(condition), 0)                                          \
             ? (void)__android_log_assert(#condition, LOG_TAG, "%s",            \
                                          ADEBUG_PLACE " CHECK(" #condition ")" \
                                                       " failed.")              \
             : (void)0)

#define CHECK_OP(x, y, suffix)                                                               \
    do {                                                                                     \
        const auto& a = x;                                                                   \
        const auto& b = y;                                                                   \
        if (!::android::adebug::holds##suffix(a, b)) {                                       \
            __android_log_assert(                                                            \
                    nullptr, LOG_TAG, "%s",                                                  \
                    ::android::adebug::withValues(                                           \
                            ADEBUG_PLACE " CHECK" #suffix "( " #x "," #y ") failed: ", a, b) \
                            .c_str());                                                       \
        }                                                                                    \
    } while (false)

#define CHECK_EQ(x, y) CHECK_OP(x, y, _EQ)
#define CHECK_NE(x, y) CHECK_OP(x, y, _NE)
#define CHECK_LE(x, y) CHECK_OP(x, y, _LE)
#define CHECK_LT(x, y) CHECK_OP(x, y, _LT)
#define CHECK_GE(x, y) CHECK_OP(x, y, _GE)
#define CHECK_GT(x, y) CHECK_OP(x, y, _GT)

// The semicolon is part of the macro.
#define TRESPASS(...) \
    __android_log_assert(nullptr, LOG_TAG, ADEBUG_PLACE " Should not be here. " __VA_ARGS__);

#endif  // CHECK_OP
