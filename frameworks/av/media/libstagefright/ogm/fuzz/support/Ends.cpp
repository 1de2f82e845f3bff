// SPDX-License-Identifier: Apache-2.0
#include "Ends.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace android::ogm::fuzz {

void finding(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::fputs("finding: ", stderr);
    std::vfprintf(stderr, format, arguments);
    std::fputs("\n", stderr);
    va_end(arguments);
    std::abort();
}

}  // namespace android::ogm::fuzz
