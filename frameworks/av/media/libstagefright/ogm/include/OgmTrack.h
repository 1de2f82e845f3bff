// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>
#include <media/NdkMediaFormat.h>
#include <utils/RefBase.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "audio/AccessUnitCutter.h"
#include "audio/AudioDump.h"
#include "audio/ElementaryStream.h"
#include "base/ByteBuffer.h"
#include "packet/PacketClock.h"
#include "packet/PacketQueue.h"
#include "stream/OgmStreamInfo.h"

namespace android {

class OgmExtractor;

/**
 * A track; see OgmExtractor. The framework's wrapper owns it and sets mBufferGroup before `start`.
 * No sp<> may hold it, because that would delete it a second time.
 */
class OgmTrack final : public MediaTrackHelper, public RefBase {
  public:
    OgmTrack(OgmExtractor* extractor, const OgmStreamInfo& stream, uint16_t bitsPerSample,
             bool isPastFirstDataPage);
    ~OgmTrack() override;

    media_status_t start() override;
    media_status_t stop() override;
    /** AMEDIA_ERROR_MALFORMED if the extractor does not know the stream. */
    media_status_t getFormat(AMediaFormat* format) override;
    /**
     * Reads the oldest packet. Returns AMEDIA_OK and a buffer, which the caller releases; or
     * END_OF_STREAM, or IO.
     */
    media_status_t read(MediaBufferHelper** buffer, const ReadOptions* options) override;

    // Called by the extractor while it reads.

    /**
     * To be called for each page of the stream that the cursor enters. `averagePerPacket` is the
     * number of granules of each of its packets.
     */
    void updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket,
                               bool isPastFirstDataPage) {
        mClock.updateGranulePosition(granulePosition, averagePerPacket, isPastFirstDataPage);
    }
    /** To be called after the cursor was moved: restarts the clock. */
    void resetPageState(bool isPastFirstDataPage) { mClock.reset(isPastFirstDataPage); }

    /** Returns `size` uninitialised bytes for appendData(). */
    ogm::ByteBuffer makePiece(size_t size) { return mPackets.makePiece(size); }
    /**
     * Takes a piece of a packet; `isNewPacket` if a packet begins with it. The piece may be moved
     * away. Returns AMEDIA_OK, even if the piece is dropped, or AMEDIA_ERROR_MALFORMED.
     */
    media_status_t appendData(ogm::ByteBuffer* packet, bool isNewPacket, bool isSeeking);
    /** Reuses the memory of a piece that has not been moved away. */
    void giveBack(ogm::ByteBuffer* piece) { mPackets.giveBack(piece); }

    /** Drops all queued packets; keeps the granule positions. */
    void signalDiscontinuity();
    /** Presentation time at the cursor in us; 0 if unknown. */
    int64_t currentTimeUs() const { return mClock.currentTimeUs(); }

    /**
     * Removes the oldest packet, which must exist, and returns it in a buffer. Returns null and
     * keeps the packet if that is not possible. A negative target time is not put into the buffer.
     */
    MediaBufferHelper* dequeueFrame(int64_t targetTimeUs);

  private:
    media_status_t appendAccessUnits(ogm::ByteBuffer* piece, bool isNewPacket);

    void logGetFormat() const;
    /** The MIME type for log lines; null if unknown. */
    const char* mimeText() const { return mMime.empty() ? nullptr : mMime.c_str(); }

    media_status_t fillQueue();
    media_status_t takePacket(MediaBufferHelper** buffer);
    /** The time at which the frame in the oldest packet is shown. */
    int64_t displayTimeUs(const OgmPacket& packet) const;
    media_status_t seek(int64_t timeUs);
    media_status_t findSyncFrame(int64_t seekUs);
    void dropQueued();

    // Set when the track is made.
    OgmExtractor* const mExtractor;
    const uint32_t mSerialNo;
    const uint32_t mType;
    const uint16_t mBitsPerSample;
    const std::string mMime;
    const ogm::AudioDump mDump;

    /** Stays set. */
    bool mStopped = false;
    /** Whether a start after the last stop has registered the track again. */
    bool mRestarted = false;

    // What has been read but not returned yet.
    /** Held, within the extractor's lock(), while packets are added or a seek drops them. */
    std::mutex mLock;
    ogm::PacketClock mClock;
    ogm::PacketQueue mPackets;
    /** Null for streams whose packets are not re-framed. */
    const std::unique_ptr<ogm::AccessUnitCutter> mCutter;
    ogm::ElementaryStream mStream;
};

}  // namespace android
