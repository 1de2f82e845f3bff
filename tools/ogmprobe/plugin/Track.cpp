// SPDX-License-Identifier: Apache-2.0
#include "plugin/Track.h"

#include <fmt/core.h>

#include <cstdlib>

#include "plugin/PluginCall.h"
#include "records/Trace.h"

namespace ogmprobe {
namespace {

const char* statusName(media_status_t status) {
    switch (status) {
        case AMEDIA_OK:
            return "AMEDIA_OK";
        case AMEDIA_ERROR_UNKNOWN:
            return "AMEDIA_ERROR_UNKNOWN";
        case AMEDIA_ERROR_MALFORMED:
            return "AMEDIA_ERROR_MALFORMED";
        case AMEDIA_ERROR_UNSUPPORTED:
            return "AMEDIA_ERROR_UNSUPPORTED";
        case AMEDIA_ERROR_INVALID_OPERATION:
            return "AMEDIA_ERROR_INVALID_OPERATION";
        case AMEDIA_ERROR_END_OF_STREAM:
            return "AMEDIA_ERROR_END_OF_STREAM";
        case AMEDIA_ERROR_IO:
            return "AMEDIA_ERROR_IO";
        case AMEDIA_ERROR_WOULD_BLOCK:
            return "AMEDIA_ERROR_WOULD_BLOCK";
        default:
            return "status";
    }
}

Track::ReadResult takeOver(android::CMediaBuffer* buffer, bool keepEntries) {
    void* handle = buffer->handle;
    const auto* from =
            static_cast<const uint8_t*>(buffer->data(handle)) + buffer->range_offset(handle);
    AMediaFormat* metadata = buffer->meta_data(handle);
    int32_t isSync = 0;
    AMediaFormat_getInt32(metadata, AMEDIAFORMAT_KEY_IS_SYNC_FRAME, &isSync);
    Packet packet;
    packet.isSync = isSync != 0;
    packet.bytes.assign(from, from + buffer->range_length(handle));
    const bool hasTime = AMediaFormat_getInt64(metadata, AMEDIAFORMAT_KEY_TIME_US, &packet.timeUs);
    if (keepEntries) {
        packet.entries = Format::entriesOf(metadata);
    }
    buffer->release(handle);
    return {AMEDIA_OK, std::move(packet), !hasTime};
}

}  // namespace

std::string statusText(media_status_t status) {
    return fmt::format("{} ({})", statusName(status), static_cast<int>(status));
}

void Track::Free::operator()(android::CMediaTrack* table) const {
    {
        const PluginCall call(PluginFunction::kFreeTrack, index);
        table->free(table->data);
    }
    ::free(table);
}

Track::Track(size_t index, android::CMediaTrack* table) : mIndex(index), mTable(table, {index}) {}

Track::~Track() {
    if (mStarted) {
        PluginCall call(PluginFunction::kStop, mIndex);
        call.returned(mTable->stop(mTable->data));
    }
    mTable.reset();
    // If the plug-in has kept a buffer, this ends the process.
    const PluginCall call(PluginFunction::kFreeBuffers, mIndex);
    mGroup.reset();
}

media_status_t Track::start() {
    if (mGroup == nullptr) {
        mGroup = std::make_unique<android::MediaBufferGroup>();
    }
    PluginCall call(PluginFunction::kStart, mIndex);
    const media_status_t status = call.returned(mTable->start(mTable->data, mGroup->wrap()));
    mStarted = status == AMEDIA_OK;
    return status;
}

Format Track::format() const {
    Format format;
    PluginCall call(PluginFunction::kGetFormat, mIndex);
    const media_status_t status = call.returned(mTable->getFormat(mTable->data, format.get()));
    return status == AMEDIA_OK ? std::move(format) : Format();
}

Track::ReadResult Track::read(const std::optional<SeekRequest>& seek) {
    // The standard clients always ask for non-blocking reads.
    uint32_t options = android::NONBLOCKING;
    if (seek) {
        options |= android::SEEK | seek->mode;
    }
    android::CMediaBuffer* buffer = nullptr;
    media_status_t status = AMEDIA_OK;
    {
        PluginCall call(PluginFunction::kRead, mIndex);
        status = call.returned(
                mTable->read(mTable->data, &buffer, options, seek ? seek->timeUs : 0));
    }
    if (status != AMEDIA_OK || buffer == nullptr) {
        return {status, std::nullopt};
    }
    ReadResult result = takeOver(buffer, mKeepsEntries);
    const Packet& packet = *result.packet;
    Trace::add<BufferRead>(mIndex, result.withoutTime ? std::nullopt : std::optional(packet.timeUs),
                           packet.isSync, packet.bytes.size());
    return result;
}

}  // namespace ogmprobe
