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

/** What lies in a file whose packets begin and end on one page, found by walking its pages. */
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
 * Says which packets the reads of a few tracks give after a seek. It knows nothing of bytes and
 * faults; what it knows of pages, granule positions, the scan and the search for a sync frame is
 * written down a second time here.
 */
class SeekModel {
  public:
    struct TrackModel {
        uint32_t serialNo;
        /** Whether a packet comes out at all; audio that is cut anew drops packets without frames.
         */
        std::function<bool(size_t packet)> isDelivered;
        std::function<bool(size_t packet)> isSync;
    };

    /** The first track is the one that moves the file. */
    SeekModel(const PagedFile& file, int64_t durationUs, std::vector<TrackModel> tracks);

    /** A seek of the selected track, as far as it goes before the read that carries it. */
    void seek(int64_t timeUs);
    /** The number of the packet that a read of this track gives, or nothing at the end. */
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
