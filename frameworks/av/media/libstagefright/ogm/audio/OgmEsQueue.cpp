// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmEsqueue"

#include "audio/OgmEsQueue.h"

#include <log/log.h>

#include "stream/StreamTypes.h"

namespace android::ogm {

bool hasEsQueue(uint32_t streamType) {
    // 2 and 16 have a queue although no file has streams of these types; 17, 20 and 21 have none.
    return isAudioType(streamType) || streamType == 16 || isFrameTypedVideo(streamType) ||
           (streamType >= OGV_VIDEO_H264 && streamType <= OGV_VIDEO_MJPEG);
}

void setUpEsQueue(uint32_t streamType) {
    if (streamType == OGA_AUDIO_MP3 || streamType == OGA_AUDIO_MPEG) {
        // An error line although nothing is wrong.
        ALOGE("set  mDequeueMpegAudioOgm :1\n");
    }
}

}  // namespace android::ogm
