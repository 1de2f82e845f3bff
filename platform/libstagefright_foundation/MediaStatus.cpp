// SPDX-License-Identifier: Apache-2.0
#include "MediaStatus.h"

#include <android/log.h>
#include <media/stagefright/MediaErrors.h>

namespace android {

media_status_t toMediaStatus(status_t status) {
    switch (status) {
        case OK:
            return AMEDIA_OK;
        case ERROR_END_OF_STREAM:
            return AMEDIA_ERROR_END_OF_STREAM;
        case ERROR_IO:
            return AMEDIA_ERROR_IO;
        case ERROR_MALFORMED:
            return AMEDIA_ERROR_MALFORMED;
        case INVALID_OPERATION:
            return AMEDIA_ERROR_INVALID_OPERATION;
        case UNKNOWN_ERROR:
            return AMEDIA_ERROR_UNKNOWN;
        default:
            __android_log_print(ANDROID_LOG_ERROR, "MediaStatus",
                                "status %d has no media status, reported as unknown error", status);
            return AMEDIA_ERROR_UNKNOWN;
    }
}

}  // namespace android
