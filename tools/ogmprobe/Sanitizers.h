// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace ogmprobe {

// gcc has macros for them, clang asks.
#ifndef __has_feature
#define __has_feature(x) 0
#endif

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || \
        __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
/** Whether a sanitizer with shadow memory and reports of its own is built in. */
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace ogmprobe
