// SPDX-License-Identifier: Apache-2.0
#include <utils/StrongPointer.h>

#include <android/log.h>

namespace android {

void sp_report_stack_pointer(const void* object) {
    __android_log_assert(nullptr, "RefBase",
                         "object %p lies on the stack and cannot be held by sp<>", object);
}

}  // namespace android
