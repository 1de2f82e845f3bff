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
 * One track; see OgmExtractor. The framework's wrapper owns it and sets mBufferGroup before
 * `start`; it must never be held by an sp<>, which would delete it a second time.
 */
class OgmTrack final : public MediaTrackHelper, public RefBase {
  public:
    OgmTrack(OgmExtractor* extractor, const OgmStreamInfo& stream, uint16_t bitsPerSample,
             bool isPastFirstDataPage);
    ~OgmTrack() override;

    media_status_t start() override;
    media_status_t stop() override;
    /** AMEDIA_ERROR_MALFORMED when the extractor does not know the stream. */
    media_status_t getFormat(AMediaFormat* format) override;
    /**
     * Hands out the oldest packet. Returns AMEDIA_OK with a buffer that the framework releases,
     * END_OF_STREAM, or IO.
     */
    media_status_t read(MediaBufferHelper** buffer, const ReadOptions* options) override;

    // Called by the extractor while it reads.

    /**
     * A page of the stream has been entered. `averagePerPacket` is the granule advance of each of
     * its packets.
     */
    void updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket,
                               bool isPastFirstDataPage) {
        mClock.updateGranulePosition(granulePosition, averagePerPacket, isPastFirstDataPage);
    }
    /** The cursor has been moved: timing begins anew. */
    void resetPageState(bool isPastFirstDataPage) { mClock.reset(isPastFirstDataPage); }

    /** Returns `size` uninitialised bytes for appendData(). */
    ogm::ByteBuffer makePiece(size_t size) { return mPackets.makePiece(size); }
    /**
     * Takes a piece of a packet; `isNewPacket` for one that begins a packet. The piece may be moved
     * away. Returns AMEDIA_OK, also for a piece that is dropped, or AMEDIA_ERROR_MALFORMED.
     */
    media_status_t appendData(ogm::ByteBuffer* packet, bool isNewPacket, bool isSeeking);
    /** Takes back the room of a piece that has not been moved away. */
    void giveBack(ogm::ByteBuffer* piece) { mPackets.giveBack(piece); }

    /** Drops all that is queued; the granule positions stay. */
    void signalDiscontinuity();
    /** Presentation time at the cursor in us, 0 when it is not known. */
    int64_t currentTimeUs() const { return mClock.currentTimeUs(); }

    /**
     * Takes the oldest packet, of which there must be one; null, and the packet stays, when it
     * cannot be handed out. A target time below 0 is not put into the buffer.
     */
    MediaBufferHelper* dequeueFrame(int64_t targetTimeUs);

  private:
    media_status_t appendAccessUnits(ogm::ByteBuffer* piece, bool isNewPacket);

    void logGetFormat() const;
    /** The MIME type as log lines take it: null when it is not known. */
    const char* mimeText() const { return mMime.empty() ? nullptr : mMime.c_str(); }

    media_status_t fillQueue();
    media_status_t takePacket(MediaBufferHelper** buffer);
    /** Time at which the frame in the oldest packet is shown. */
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

    /** Once set it stays set. */
    bool mStopped = false;
    /** Whether a start after the last stop has put the track among the started ones. */
    bool mRestarted = false;

    // What has been read and not handed out.
    /** Held inside the extractor's lock() where packets are added and where a seek drops them. */
    std::mutex mLock;
    ogm::PacketClock mClock;
    ogm::PacketQueue mPackets;
    /** Of re-framed audio, for which there is a cutter. */
    const std::unique_ptr<ogm::AccessUnitCutter> mCutter;
    ogm::ElementaryStream mStream;
};

}  // namespace android
