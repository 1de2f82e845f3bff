// SPDX-License-Identifier: Apache-2.0
#include "Plugin.h"

#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "OgmFile.h"

namespace android::ogm::test {
namespace {

void freeExtractor(CMediaExtractor* extractor) {
    extractor->free(extractor->data);
    ::free(extractor);
}

GetExtractorDef entryPoint() {
    static const auto entry = [] {
        // Never unloaded, as in the framework once it has accepted a plug-in.
        void* library = dlopen(OGM_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            throw std::runtime_error(std::string("cannot load the plug-in: ") + dlerror());
        }
        void* symbol = dlsym(library, "GETEXTRACTORDEF");
        if (symbol == nullptr) {
            throw std::runtime_error("the plug-in has no entry point");
        }
        return reinterpret_cast<GetExtractorDef>(symbol);
    }();
    return entry;
}

CreatorFunc creator() {
    static const CreatorFunc function = [] {
        MemorySource source(oneVideoOneAudioFile({}).bytes());
        return sniff(source).creator;
    }();
    return function;
}

}  // namespace

void Track::Free::operator()(CMediaTrack* track) const {
    track->free(track->data);
    ::free(track);
}

Track::Track(std::shared_ptr<CMediaExtractor> extractor, CMediaTrack* track)
    : mExtractor(std::move(extractor)), mTrack(track) {}

media_status_t Track::start() {
    if (mGroup == nullptr) {
        mGroup = std::make_unique<MediaBufferGroup>();
    }
    return start(mGroup->wrap());
}

std::vector<int64_t> timesOf(const std::vector<ReadResult>& results) {
    std::vector<int64_t> times;
    times.reserve(results.size());
    for (const ReadResult& result : results) {
        times.push_back(result.timeUs.value_or(-1));
    }
    return times;
}

media_status_t Track::start(CMediaBufferGroup* group) {
    return mTrack->start(mTrack->data, group);
}

media_status_t Track::stop() {
    return mTrack->stop(mTrack->data);
}

media_status_t Track::getFormat(const Format& format) {
    return mTrack->getFormat(mTrack->data, format.get());
}

bool Track::supportsNonBlockingRead() {
    return mTrack->supportsNonBlockingRead(mTrack->data);
}

ReadResult Track::read(uint32_t options, int64_t seekUs) {
    ReadResult result;
    CMediaBuffer* buffer = nullptr;
    result.status = mTrack->read(mTrack->data, &buffer, options, seekUs);
    if (buffer == nullptr) {
        return result;
    }
    result.hasBuffer = true;
    AMediaFormat* meta = buffer->meta_data(buffer->handle);
    result.timeUs = int64Of(meta, AMEDIAFORMAT_KEY_TIME_US);
    result.targetTimeUs = int64Of(meta, AMEDIAFORMAT_KEY_TARGET_TIME);
    result.isSyncFrame = int32Of(meta, AMEDIAFORMAT_KEY_IS_SYNC_FRAME);
    result.rangeOffset = buffer->range_offset(buffer->handle);
    result.capacity = buffer->size(buffer->handle);
    const auto* data = static_cast<const uint8_t*>(buffer->data(buffer->handle));
    data += result.rangeOffset;
    result.bytes.assign(data, data + buffer->range_length(buffer->handle));
    release(buffer);
    return result;
}

ReadResult Track::readAt(int64_t seekUs) {
    return read(SEEK | SEEK_PREVIOUS_SYNC, seekUs);
}

std::vector<ReadResult> Track::readAll(size_t limit) {
    std::vector<ReadResult> results;
    while (results.size() < limit) {
        ReadResult result = read();
        if (!result.hasBuffer) {
            break;
        }
        results.push_back(std::move(result));
    }
    return results;
}

std::vector<ReadResult> Track::drain(size_t limit) {
    std::vector<ReadResult> results = readAll(limit);
    std::vector<ReadResult> rest = readAll(limit - results.size());
    results.insert(results.end(), rest.begin(), rest.end());
    return results;
}

CMediaBuffer* Track::readAndKeep() {
    CMediaBuffer* buffer = nullptr;
    mTrack->read(mTrack->data, &buffer, 0, 0);
    return buffer;
}

void Track::release(CMediaBuffer* buffer) {
    buffer->release(buffer->handle);
}

Extractor::Extractor(CMediaExtractor* extractor) : mExtractor(extractor, freeExtractor) {}

size_t Extractor::countTracks() const {
    return mExtractor->countTracks(mExtractor->data);
}

std::unique_ptr<Track> Extractor::track(size_t index) const {
    CMediaTrack* track = mExtractor->getTrack(mExtractor->data, index);
    if (track == nullptr) {
        return nullptr;
    }
    return std::make_unique<Track>(mExtractor, track);
}

std::unique_ptr<Track> Extractor::startedTrack(size_t index) const {
    std::unique_ptr<Track> started = track(index);
    if (started != nullptr) {
        started->start();
    }
    return started;
}

media_status_t Extractor::getTrackMetaData(const Format& format, size_t index,
                                           uint32_t flags) const {
    return mExtractor->getTrackMetaData(mExtractor->data, format.get(), index, flags);
}

media_status_t Extractor::getMetaData(const Format& format) const {
    return mExtractor->getMetaData(mExtractor->data, format.get());
}

Format Extractor::trackFormat(size_t index) const {
    Format format;
    if (getTrackMetaData(format, index) != AMEDIA_OK) {
        throw std::runtime_error("there is no such track");
    }
    return format;
}

Format Extractor::fileFormat() const {
    Format format;
    getMetaData(format);
    return format;
}

uint32_t Extractor::flags() const {
    return mExtractor->flags(mExtractor->data);
}

media_status_t Extractor::setMediaCas() const {
    const uint8_t token = 0;
    return mExtractor->setMediaCas(mExtractor->data, &token, sizeof(token));
}

const char* Extractor::name() const {
    return mExtractor->name(mExtractor->data);
}

ExtractorDef pluginDefinition() {
    return entryPoint()();
}

SniffResult sniff(MemorySource& source, const SniffResult& before) {
    SniffResult result = before;
    result.creator = pluginDefinition().u.v3.sniff(source.table(), &result.confidence, &result.meta,
                                                   &result.freeMeta);
    return result;
}

Extractor openFile(MemorySource& source) {
    return Extractor(creator()(source.table(), nullptr));
}

}  // namespace android::ogm::test
