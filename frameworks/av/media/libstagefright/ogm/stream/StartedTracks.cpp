// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/StartedTracks.h"

#include <log/log.h>

namespace android::ogm {

void logAlreadyStarted(int32_t serialNo) {
    ALOGE("[start] Error, the serialNo[%d] is already started!!!", serialNo);
}

void logTrackStop(int32_t serialNo, int32_t selectedSerialNo) {
    ALOGI("trackStop:serialNo=%d, mSelectedSerialNo=%d", serialNo, selectedSerialNo);
}

}  // namespace android::ogm
