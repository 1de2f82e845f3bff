// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/AudioDump.h"

#include <cutils/properties.h>
#include <log/log.h>

#include <cstdio>
#include <memory>

namespace android::ogm {

namespace {

constexpr const char* kDumpFile = "/data/bs_dump_OGM_AUDIO.bin";

struct FileCloser {
    void operator()(FILE* file) const { (void)fclose(file); }
};

}  // namespace

AudioDump::AudioDump()
    : mDumpAudio(property_get_int32("vendor.zor.ogmextractor.dump.audio", 0) != 0) {
    // Read like the other property, but without effect: there is no dump of video.
    (void)property_get_int32("vendor.zor.ogmextractor.dump.video", 0);
}

void AudioDump::write(MediaBufferHelper* buffer) const {
    const std::unique_ptr<FILE, FileCloser> file(fopen(kDumpFile, "ab"));
    // The buffer's whole capacity, not its range.
    const size_t size = file == nullptr ? 0 : buffer->size();
    if (size == 0) {
        ALOGD("Open bs_dump_OGM_AUDIO.bin failed!");
        return;
    }
    (void)fwrite(buffer->data(), 1, size, file.get());
}

}  // namespace android::ogm
