// SPDX-License-Identifier: Apache-2.0
#include "LibraryAssert.h"

#include <android/log.h>

#define FOUNDATION_FOLDER "frameworks/av/media/libstagefright/foundation/"

namespace android {

void checkFailed(const AssertionSite& site) {
    __android_log_assert(nullptr, site.tag, FOUNDATION_FOLDER "%s %s failed.", site.place,
                         site.check);
}

void comparisonTextFailed(const AssertionSite& site, const AString& values) {
    __android_log_assert(nullptr, site.tag, FOUNDATION_FOLDER "%s %s failed: %s", site.place,
                         site.check, values.c_str());
}

}  // namespace android
