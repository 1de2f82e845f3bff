// SPDX-License-Identifier: Apache-2.0
#include "Player.h"

#include <dlfcn.h>
#include <media/NdkMediaFormat.h>

#include <cstdlib>
#include <stdexcept>

namespace android::ogm::bench {

const ExtractorDef& plugin() {
    static const ExtractorDef definition = [] {
        void* const library = dlopen(OGM_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        void* const entry = library == nullptr ? nullptr : dlsym(library, "GETEXTRACTORDEF");
        if (entry == nullptr) {
            throw std::runtime_error(std::string("cannot load the plug-in: ") + dlerror());
        }
        return reinterpret_cast<GetExtractorDef>(entry)();
    }();
    return definition;
}

Player::Player(Source& source) {
    float confidence = 0;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
    const CreatorFunc create = plugin().u.v3.sniff(source.table(), &confidence, &meta, &freeMeta);
    if (create == nullptr) {
        throw std::runtime_error("the plug-in refuses the file");
    }
    mExtractor = create(source.table(), meta);
}

Player::~Player() {
    for (Track& track : mTracks) {
        track.table->stop(track.table->data);
        track.table->free(track.table->data);
        ::free(track.table);
    }
    mExtractor->free(mExtractor->data);
    ::free(mExtractor);
}

void Player::startTracks() {
    const size_t count = mExtractor->countTracks(mExtractor->data);
    for (size_t i = 0; i < count; ++i) {
        CMediaTrack* const table = mExtractor->getTrack(mExtractor->data, i);
        mTracks.push_back({table, std::make_unique<MediaBufferGroup>()});
        table->start(table->data, mTracks.back().group->wrap());
    }
}

int64_t Player::durationUs() const {
    AMediaFormat* const format = AMediaFormat_new();
    mExtractor->getMetaData(mExtractor->data, format);
    int64_t durationUs = 0;
    AMediaFormat_getInt64(format, AMEDIAFORMAT_KEY_DURATION, &durationUs);
    AMediaFormat_delete(format);
    return durationUs;
}

bool Player::read(size_t index, uint32_t options, int64_t seekUs) {
    Track& track = mTracks[index];
    CMediaBuffer* buffer = nullptr;
    track.table->read(track.table->data, &buffer, options, seekUs);
    if (buffer == nullptr) {
        return false;
    }
    AMediaFormat_getInt64(buffer->meta_data(buffer->handle), AMEDIAFORMAT_KEY_TIME_US,
                          &track.timeUs);
    ++mBuffers;
    mPayloadBytes += buffer->range_length(buffer->handle);
    buffer->release(buffer->handle);
    return true;
}

bool Player::seekAndRead(size_t track, int64_t seekUs) {
    return read(track, SEEK | SEEK_PREVIOUS_SYNC, seekUs);
}

void Player::readInTimeOrder() {
    for (;;) {
        Track* next = nullptr;
        for (Track& track : mTracks) {
            if (!track.ended && (next == nullptr || track.timeUs < next->timeUs)) {
                next = &track;
            }
        }
        if (next == nullptr) {
            return;
        }
        next->ended = !read(static_cast<size_t>(next - mTracks.data()));
    }
}

void Player::readTrackToEnd(size_t track) {
    while (read(track)) {
    }
}

}  // namespace android::ogm::bench
