// SPDX-License-Identifier: Apache-2.0
#include "LibraryAssert.h"

#include <android/log.h>

#define FOUNDATION_FOLDER "frameworks/av/media/libstagefright/foundation/"

namespace android {

void checkFailed(const AssertionSite& site) {
    __android_log_assert(nullptr, site.tag, FOUNDATION_FOLDER "%s %s failed.", site.place,
                         site.check);
}

void comparisonFailed(const AssertionSite& site, int x, int y) {
    __android_log_assert(nullptr, site.tag, FOUNDATION_FOLDER "%s %s failed: %d vs. %d", site.place,
                         site.check, x, y);
}

}  // namespace android
