// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <log/log.h>
#include <media/MediaExtractorPluginApi.h>
#include <media/MediaExtractorPluginHelper.h>

#include <cstdint>
#include <memory>

#include "OgmExtractor.h"
#include "page/Sniff.h"

namespace android {

namespace {

constexpr size_t kSniffSize = 1024;
constexpr int32_t kMinSniffSize = 4;
/** The same for all streams. */
constexpr float kConfidence = 0.5F;

const char* kSupportedTypes[] = {"ogm", "ogg", nullptr};

/** `meta` is not used: the sniff sets none. */
CMediaExtractor* CreateExtractor(CDataSource* source, void* /* meta */) {
    return wrap(new OgmExtractor(std::make_unique<DataSourceHelper>(source)));
}

CreatorFunc Sniff(CDataSource* source, float* confidence, void** /* meta */,
                  FreeMetaFunc* /* freeMeta */) {
    ALOGI("[ogm]SniffVendorExtractor IN");
    *confidence = 0.0F;

    uint8_t buffer[kSniffSize] = {};
    const auto count = static_cast<int32_t>(source->readAt(source->handle, 0, buffer, kSniffSize));
    if (count < kMinSniffSize) {
        ALOGE("Sniff:DataSource read fail, length=%d", count);
        return nullptr;
    }
    // Always the whole buffer: after a short file it holds zeros.
    uint8_t isVorbisExist = 0;
    if (!sniffOgm(buffer, kSniffSize, &isVorbisExist)) {
        ALOGE("Sniff:parseOgmHeader fail,isVorbisExist=%d", isVorbisExist);
        return nullptr;
    }
    ALOGI("sniffOgm OK, isVorbisExist =%d", isVorbisExist);
    *confidence = kConfidence;
    ALOGD("return true confidence: %f", static_cast<double>(*confidence));
    return CreateExtractor;
}

}  // namespace

extern "C" {

/** The library's only entry point. */
__attribute__((visibility("default"))) ExtractorDef GETEXTRACTORDEF() {
    return {
            EXTRACTORDEF_VERSION_NDK_V2,
            UUID("8d1f2c6e-5a47-4b0e-9c3d-6f7a1e0b9254"),
            2,
            "ZOR OGM Extractor",
            {.v3 = {Sniff, kSupportedTypes}},
    };
}

}  // extern "C"

}  // namespace android
