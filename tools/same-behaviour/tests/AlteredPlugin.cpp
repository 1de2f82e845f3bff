// SPDX-License-Identifier: Apache-2.0
// The real plug-in with one change, which the environment variable OGM_ALTERATION names.
#include <android/log.h>
#include <cutils/properties.h>
#include <dlfcn.h>
#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using namespace android;

constexpr char kTag[] = "OgmExtractor";

bool isAltered(const char* what) {
    const char* const alteration = getenv("OGM_ALTERATION");
    return alteration != nullptr && strcmp(alteration, what) == 0;
}

ExtractorDef realDefinition() {
    static void* const library = dlopen(OGM_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<GetExtractorDef>(dlsym(library, "GETEXTRACTORDEF"))();
}

// The functions that those below wrap. All files and tracks have the same ones.
CreatorFunc gCreate;
decltype(CMediaExtractor::getTrack) gGetTrack;
decltype(CMediaTrack::read) gRead;
decltype(CMediaTrack::stop) gStop;
decltype(CMediaTrack::free) gFree;

void alterBuffer(CMediaBuffer* buffer) {
    if (isAltered("byte") && buffer->range_length(buffer->handle) > 0) {
        static_cast<uint8_t*>(buffer->data(buffer->handle))[0] ^= 1;
    }
    if (isAltered("time")) {
        AMediaFormat_setInt64(buffer->meta_data(buffer->handle), "timeUs", 1);
    }
    if (isAltered("buffer")) {
        buffer->set_range(buffer->handle, 0, buffer->range_length(buffer->handle));
    }
}

media_status_t read(void* data, CMediaBuffer** buffer, uint32_t options, int64_t timeUs) {
    const media_status_t status = gRead(data, buffer, options, timeUs);
    if (*buffer != nullptr) {
        alterBuffer(*buffer);
    }
    return isAltered("status") && status == AMEDIA_ERROR_END_OF_STREAM ? AMEDIA_ERROR_IO : status;
}

media_status_t stop(void* data) {
    if (isAltered("crash")) {
        (void)raise(SIGSEGV);
    }
    while (isAltered("loop")) {
        (void)getppid();
    }
    while (isAltered("wait")) {
        (void)pause();
    }
    while (isAltered("chatter")) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "again");
    }
    return gStop(data);
}

void freeTrack(void* data) {
    if (isAltered("assertion")) {
        __android_log_assert(nullptr, kTag, "must not happen");
    }
    if (isAltered("dump")) {
        if (FILE* const file = fopen("/data/dump.bin", "ab")) {
            (void)fputs("bytes", file);
            (void)fclose(file);
        }
    }
    gFree(data);
}

CMediaTrack* getTrack(void* data, size_t index) {
    if (isAltered("log")) {
        __android_log_print(ANDROID_LOG_INFO, kTag, "one line more");
    }
    if (isAltered("property")) {
        (void)property_get_int32("one.more", 0);
    }
    CMediaTrack* const track = gGetTrack(data, index);
    if (track != nullptr) {
        gRead = track->read;
        gStop = track->stop;
        gFree = track->free;
        track->read = read;
        track->stop = stop;
        track->free = freeTrack;
    }
    return track;
}

CMediaExtractor* create(CDataSource* source, void* meta) {
    if (isAltered("source")) {
        char byte = 0;
        (void)source->readAt(source->handle, 0, &byte, 1);
    }
    CMediaExtractor* const extractor = gCreate(source, meta);
    gGetTrack = extractor->getTrack;
    extractor->getTrack = getTrack;
    return extractor;
}

CreatorFunc sniff(CDataSource* source, float* confidence, void** meta, FreeMetaFunc* freeMeta) {
    gCreate = realDefinition().u.v3.sniff(source, confidence, meta, freeMeta);
    if (isAltered("confidence")) {
        *confidence += 0.1F;
    }
    return gCreate == nullptr ? nullptr : create;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) ExtractorDef GETEXTRACTORDEF() {
    const ExtractorDef real = realDefinition();
    return {real.def_version,
            real.extractor_uuid,
            real.extractor_version,
            real.extractor_name,
            {.v3 = {sniff, real.u.v3.supported_types}}};
}
