// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace ogmprobe {

// gcc has macros for them, clang has a query.
#ifndef __has_feature
#define __has_feature(x) 0
#endif

#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
inline constexpr bool kAddressSanitized = true;
#else
inline constexpr bool kAddressSanitized = false;
#endif

#if defined(__SANITIZE_THREAD__) || __has_feature(thread_sanitizer)
inline constexpr bool kThreadSanitized = true;
#else
inline constexpr bool kThreadSanitized = false;
#endif

/** Whether a sanitizer with its own shadow memory and reports is built in. */
inline constexpr bool kSanitized = kAddressSanitized || kThreadSanitized;

}  // namespace ogmprobe
