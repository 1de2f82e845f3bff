// SPDX-License-Identifier: Apache-2.0
/**
 * A rival of the plug-in under test. It takes every file. The build defines its properties:
 * RIVAL_NAME, RIVAL_UUID, RIVAL_VERSION, RIVAL_CONFIDENCE, RIVAL_INTERFACE (version of the
 * definition).
 */
#include <media/MediaExtractorPluginHelper.h>

#include <atomic>

#include "RivalMeta.h"

#pragma GCC visibility push(default)
extern "C" {
/** Number of `meta` objects that have not been freed. */
std::atomic<int> gRivalMetaCount = 0;
}
#pragma GCC visibility pop

namespace android {
namespace {

class RivalExtractor : public MediaExtractorPluginHelper {
  public:
    size_t countTracks() override { return 0; }
    MediaTrackHelper* getTrack(size_t /* index */) override { return nullptr; }
    media_status_t getTrackMetaData(AMediaFormat* /* meta */, size_t /* index */,
                                    uint32_t /* flags */) override {
        return AMEDIA_ERROR_UNKNOWN;
    }
    media_status_t getMetaData(AMediaFormat* /* meta */) override { return AMEDIA_OK; }
    const char* name() override { return RIVAL_NAME; }
};

void freeMeta(void* meta) {
    delete static_cast<ogm::test::RivalMeta*>(meta);
    --gRivalMetaCount;
}

CMediaExtractor* create(CDataSource* /* source */, void* meta) {
    // The factory passes on the sniff's `meta`, which must not have been freed yet.
    return static_cast<ogm::test::RivalMeta*>(meta)->intact() ? wrap(new RivalExtractor) : nullptr;
}

CreatorFunc sniff(CDataSource* /* source */, float* confidence, void** meta,
                  FreeMetaFunc* freeMetaFunction) {
    *confidence = RIVAL_CONFIDENCE;
    *meta = new ogm::test::RivalMeta;
    *freeMetaFunction = freeMeta;
    ++gRivalMetaCount;
    return create;
}

const char* kTypes[] = {"ogm", nullptr};

}  // namespace

extern "C" __attribute__((visibility("default"))) ExtractorDef GETEXTRACTORDEF() {
    return {RIVAL_INTERFACE, UUID(RIVAL_UUID), RIVAL_VERSION, RIVAL_NAME, {.v3 = {sniff, kTypes}}};
}

}  // namespace android
