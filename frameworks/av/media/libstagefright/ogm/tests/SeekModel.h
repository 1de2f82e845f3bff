// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "Bytes.h"

namespace android::ogm::test {

/** The pages and packets of a file in which each packet begins and ends on one page. */
struct PagedFile {
    struct Page {
        int64_t offset;
        uint32_t serialNo;
        uint64_t granule;
        /** Numbers of the packets within their stream; the header packet is not counted. */
        size_t firstPacket;
        size_t packetCount;
        /** Whether a later page belongs to the same stream. */
        bool hasSuccessor;
    };

    struct Stream {
        bool isVideo = false;
        /** In 100 ns; of video. */
        uint64_t timeUnit = 0;
        uint64_t sampleRate = 0;
        /** The data packets with their OGM packet headers. */
        std::vector<Bytes> packets;
    };

    explicit PagedFile(const Bytes& bytes);

    int64_t size;
    int64_t firstDataPageOffset = 0;
    std::vector<Page> pages;
    std::map<uint32_t, Stream> streams;

  private:
    void addPage(const Bytes& bytes, size_t offset, const Bytes& lacing);
};

/**
 * Predicts which packets the reads of several tracks return after a seek. It is a second
 * implementation of pages, granule positions, the scan and the search for a sync frame, without
 * bytes and faults.
 */
class SeekModel {
  public:
    struct TrackModel {
        uint32_t serialNo;
        /** Whether a packet is returned at all: re-framed audio drops packets without frames. */
        std::function<bool(size_t packet)> isDelivered;
        std::function<bool(size_t packet)> isSync;
    };

    /** The first track is the selected one. */
    SeekModel(const PagedFile& file, int64_t durationUs, std::vector<TrackModel> tracks);

    /** A seek of the selected track, without the read that follows. */
    void seek(int64_t timeUs);
    /** The number of the packet that a read of this track returns; nothing at the end. */
    std::optional<size_t> read(size_t track);

  private:
    struct Item {
        size_t packet;
        int64_t timeUs;
    };
    struct TrackState {
        TrackModel model;
        const PagedFile::Stream* stream;
        std::deque<Item> queue;
        uint64_t currentGranule = 0;
        uint64_t previousGranule = 0;
        bool granuleValid = false;

        void enterPage(uint64_t granule, bool pastFirstDataPage);
        int64_t timeUs() const;
    };

    TrackState* trackOf(uint32_t serialNo);
    void moveTo(int64_t offset);
    bool enterNextPage();
    int64_t currentTimeUs() const;
    void seekToTime(int64_t timeUs);
    void scanTo(int64_t targetUs);
    bool deliverPacket(bool seeking);
    bool fill(TrackState& track, bool seeking);
    void searchSyncFrame(int64_t timeUs);

    const PagedFile& mFile;
    int64_t mDurationUs;
    std::vector<TrackState> mTracks;

    size_t mPage = 0;
    /** The page at mPage still has to be entered. */
    bool mBeforePage = true;
    /** Packets of the page at mPage that have been taken. */
    size_t mTaken = 0;
};

}  // namespace android::ogm::test
