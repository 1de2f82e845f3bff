// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "codec/MpegAudioFrame.h"

#include <log/log.h>

#include "codec/MpegAudioHeader.h"

namespace android::ogm {

namespace {

/** Bytes to search for a confirmed header before they are dropped. */
constexpr size_t kMaxHeaderSearch = 0x20000;

}  // namespace

bool isTooLongWithoutLock(size_t size) {
    return size > kMaxHeaderSearch;
}

bool lockMpegAudio(ByteView data, uint64_t* offset, uint32_t* reference) {
    if (findMP3Header(data, offset, reference) == kMP3HeaderFound) {
        return true;
    }
    if (isTooLongWithoutLock(data.size())) {
        ALOGE("findMP3Header fail size>131072, skip this buffer");
    } else {
        ALOGW("Not get mMP3Header, size:%d", static_cast<int>(data.size()));
    }
    return false;
}

}  // namespace android::ogm
