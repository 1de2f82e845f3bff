// SPDX-License-Identifier: Apache-2.0
#include "Walks.h"

#include <ogg/ogg.h>

#include <algorithm>
#include <cstring>
#include <map>

#include "OggPage.h"

namespace android::ogm::bench {

namespace {

constexpr size_t kBlockSize = 65536;
constexpr uint8_t kUnterminated = 255;

/** libogg's state of each stream of a file. */
class LiboggStreams {
  public:
    LiboggStreams() { ogg_sync_init(&mSync); }
    ~LiboggStreams() {
        for (auto& [serialNo, stream] : mStreams) {
            ogg_stream_clear(&stream);
        }
        ogg_sync_clear(&mSync);
    }
    LiboggStreams(const LiboggStreams&) = delete;
    LiboggStreams& operator=(const LiboggStreams&) = delete;

    void add(const uint8_t* data, size_t size, WalkResult* result) {
        memcpy(ogg_sync_buffer(&mSync, static_cast<long>(size)), data, size);
        ogg_sync_wrote(&mSync, static_cast<long>(size));
        ogg_page page;
        while (ogg_sync_pageout(&mSync, &page) == 1) {
            ++result->pages;
            takePackets(&page, result);
        }
    }

  private:
    void takePackets(ogg_page* page, WalkResult* result) {
        const int serialNo = ogg_page_serialno(page);
        const auto [stream, isNew] = mStreams.try_emplace(serialNo);
        if (isNew) {
            ogg_stream_init(&stream->second, serialNo);
        }
        ogg_stream_pagein(&stream->second, page);
        ogg_packet packet;
        while (ogg_stream_packetout(&stream->second, &packet) == 1) {
            ++result->packets;
            result->payloadBytes += static_cast<uint64_t>(packet.bytes);
        }
    }

    ogg_sync_state mSync{};
    std::map<int, ogg_stream_state> mStreams;
};

}  // namespace

WalkResult walkWithLibogg(const MappedFile& file) {
    WalkResult result;
    LiboggStreams streams;
    for (size_t offset = 0; offset < file.size(); offset += kBlockSize) {
        streams.add(file.data() + offset, std::min(kBlockSize, file.size() - offset), &result);
    }
    return result;
}

std::vector<PayloadPlace> payloadPlaces(const MappedFile& file) {
    std::vector<PayloadPlace> places;
    size_t page = 0;
    while (page < file.size()) {
        const uint8_t* const lacing = file.data() + page + test::kPageHeaderSize;
        const size_t segments = file.data()[page + test::kSegmentCountOffset];
        PayloadPlace piece{page + test::kPageHeaderSize + segments, 0};
        for (size_t i = 0; i < segments; ++i) {
            piece.size += lacing[i];
            if (lacing[i] != kUnterminated || i + 1 == segments) {
                places.push_back(piece);
                piece = {piece.offset + piece.size, 0};
            }
        }
        page = piece.offset;
    }
    return places;
}

void copyPayload(const MappedFile& file, const std::vector<PayloadPlace>& places) {
    static uint8_t buffer[test::kFullPageBody];
    for (const PayloadPlace& place : places) {
        memcpy(buffer, file.data() + place.offset, place.size);
        asm volatile("" : : "r"(buffer) : "memory");  // the bytes count as used
    }
}

void readSequentially(Source& source) {
    static uint8_t buffer[kBlockSize];
    CDataSource* const table = source.table();
    off64_t offset = 0;
    for (;;) {
        const ssize_t count = table->readAt(table->handle, offset, buffer, sizeof(buffer));
        if (count <= 0) {
            return;
        }
        offset += count;
    }
}

}  // namespace android::ogm::bench
