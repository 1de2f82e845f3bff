// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <type_traits>

/**
 * Arithmetic on numbers from a file, which may have any value. The result is always defined: it is
 * that of the 64-bit Arm instructions. Device builds of media modules end the process on an
 * overflow of a plain operator, unsigned ones included. So use these functions wherever a sum,
 * difference or product may overflow.
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

/** Quotient, truncated. Dividing by 0 gives 0; the lowest number divided by -1 gives itself. */
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
