// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <type_traits>

/**
 * Arithmetic on numbers that come from a file. Any number may be in there, and every one has a
 * defined result: that of the 64-bit Arm instructions. Device builds of media modules stop the
 * process on an overflow that is not spelled out, unsigned ones included, so a sum, difference or
 * product that may overflow is never written with a bare operator.
 */
namespace android::ogm {

template <typename T>
using SameAs = std::common_type_t<T>;

/** Sum in two's complement. */
template <typename T>
constexpr T wrapAdd(T lhs, SameAs<T> rhs) {
    T result{};
    (void)__builtin_add_overflow(lhs, rhs, &result);
    return result;
}

/** Difference in two's complement. */
template <typename T>
constexpr T wrapSub(T lhs, SameAs<T> rhs) {
    T result{};
    (void)__builtin_sub_overflow(lhs, rhs, &result);
    return result;
}

/** Product in two's complement. */
template <typename T>
constexpr T wrapMul(T lhs, SameAs<T> rhs) {
    T result{};
    (void)__builtin_mul_overflow(lhs, rhs, &result);
    return result;
}

/** Quotient, truncated: 0 for a divisor of 0, and the most negative number divided by -1 is itself.
 */
template <typename T>
constexpr T wrapDiv(T dividend, SameAs<T> divisor) {
    if (divisor == 0) {
        return 0;
    }
    if constexpr (std::is_signed_v<T>) {
        if (divisor == -1) {
            return wrapSub(T{0}, dividend);
        }
    }
    return dividend / divisor;
}

}  // namespace android::ogm
