// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "packet/ReadDecision.h"

#include <log/log.h>
#include <media/NdkMediaError.h>
#include <media/stagefright/MediaErrors.h>

namespace android::ogm {

namespace {

ReadStep decideWithPackets(int32_t result, size_t queued) {
    if (result == ERROR_END_OF_STREAM) {
        if (queued <= 1) {
            ALOGI("ERROR_END_OF_STREAM, send EOS");
            return ReadStep::kEndOfStream;
        }
        ALOGI("ERROR_END_OF_STREAM, dequeue existed frames[%d]", static_cast<int>(queued));
        return ReadStep::kDequeue;
    }
    if (result == ERROR_IO) {
        ALOGE("Read:dequeuePacket fail, ERROR_IO!");
        return ReadStep::kIoError;
    }
    return ReadStep::kDequeue;
}

ReadStep decideWithoutPackets(int32_t result, size_t queued) {
    if (result == AMEDIA_ERROR_IO) {
        return ReadStep::kIoError;
    }
    if (result == AMEDIA_OK) {
        return ReadStep::kDequeue;
    }
    if (result == ERROR_END_OF_STREAM && queued <= 1) {
        ALOGI("OGM_END_OF_TRACK 1, video send EOS");
        return ReadStep::kEndOfStream;
    }
    return ReadStep::kEndOfData;
}

}  // namespace

// The demuxer reports the status values of the plug-in interface. The framework has other values
// with the same names; they are different cases here, on purpose. So the end of the data
// (AMEDIA_ERROR_END_OF_STREAM) does not end a track that still has packets.
ReadStep decideAfterFilling(int32_t result, bool hadCompletePackets, size_t queued) {
    return hadCompletePackets ? decideWithPackets(result, queued)
                              : decideWithoutPackets(result, queued);
}

}  // namespace android::ogm
