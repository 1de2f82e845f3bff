// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * The OGM extractor and its tracks. docs/design.md shows their parts.
 *
 * An OgmExtractor is created for a file; its constructor reads the header pages, the duration and
 * the codec configuration. The framework then gets the formats, creates an OgmTrack for each track
 * that it wants to play, and reads one packet or access unit after the other from it. All tracks of
 * a file share one cursor over its pages. A track that needs data moves the cursor, and each packet
 * that is read goes into the queue of its own track.
 *
 * Threads: `read` may be called from several threads at the same time, also for tracks of the same
 * extractor; these calls take turns. Formats may be requested meanwhile. Callers must serialise
 * everything else, also with each `read` of the same extractor: creating a track, its `start` and
 * `stop`, its destruction (which stops it), and the destruction of the extractor. The extractor
 * must outlive its tracks, except those that were stopped and not started again.
 */

#include <media/MediaExtractorPluginHelper.h>
#include <media/NdkMediaFormat.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "OgmTrack.h"
#include "packet/OgmPacket.h"
#include "packet/PassingPackets.h"
#include "page/OgmPage.h"
#include "page/PageCursor.h"
#include "page/PageReader.h"
#include "stream/OgmStreamInfo.h"
#include "stream/StartedTracks.h"
#include "stream/StreamTable.h"
#include "stream/StreamTypes.h"

namespace android {

class OgmExtractor final : public MediaExtractorPluginHelper {
  public:
    /** Opens the file. Never fails; what cannot be read is missing afterwards. */
    explicit OgmExtractor(std::unique_ptr<DataSourceHelper> dataSource);
    ~OgmExtractor() override;

    size_t countTracks() override;
    /** Null for an index out of range. The caller owns the track. */
    MediaTrackHelper* getTrack(size_t index) override;
    /** AMEDIA_ERROR_UNKNOWN for an index out of range. */
    media_status_t getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags) override;
    media_status_t getMetaData(AMediaFormat* format) override;

    // For tracks.

    /** Held for the whole of every read. */
    std::mutex& lock() { return mExtractorLock; }

    // For tracks, while they hold lock().

    /**
     * Reads the next piece of a packet and passes it to its track. Returns AMEDIA_OK,
     * END_OF_STREAM, or IO if the piece cannot be read; then the next call tries again.
     */
    media_status_t readNextPacket();

    /** Moves the cursor to about three seconds before `timeUs`. */
    void seekToTime(int64_t timeUs);

    /** Whether seeks of the stream's track move the cursor. */
    bool isSelected(uint32_t serialNo) const { return mStartedTracks.isSelected(serialNo); }
    /** While set, packets of audio tracks are dropped. */
    void setSeeking(bool seeking) { mSeeking = seeking; }

    // For tracks, serialised with reads.

    /** Registers a track unless its stream has one. Returns whether it was registered. */
    bool trackStart(int32_t serialNo, OgmTrack* track);
    void trackStop(int32_t serialNo);
    /** To be called when a registered track is destroyed. Its stream stays registered. */
    void trackDestroyed(const OgmTrack* track);

    // For tracks, at any time.

    /** MIME type of a stream; empty if unknown. */
    std::string mimeOf(uint32_t serialNo) const { return mStreams.mimeOf(serialNo); }
    /** Copies a stream's format and the duration; AMEDIA_ERROR_MALFORMED for an unknown stream. */
    media_status_t copyFormat(uint32_t serialNo, AMediaFormat* format) const;

  private:
    media_status_t seekToPage(int64_t offset);
    media_status_t refreshGranules(OgmTrack* track);
    /** Reads a piece and passes it to a track, or to PassingPackets if there is none. */
    template <typename Receiver>
    media_status_t handOver(const ogm::PacketPiece& piece, Receiver* receiver);
    void scanToTime(int64_t seekUs);
    bool isPastFirstDataPage() const { return mCursor.pageOffset() > mFirstDataPageOffset; }

    std::mutex mExtractorLock;

    // The file, known once it has been opened.
    ogm::PageReader mPages;
    ogm::StreamTable mStreams;
    int64_t mDuration = 0;
    /** Offset of the first page that does not begin a stream, or of the junk before it. */
    int64_t mFirstDataPageOffset = 0;

    // Reading and seeking.
    ogm::PageCursor mCursor;
    ogm::StartedTracks<OgmTrack> mStartedTracks;
    ogm::PassingPackets mPassing;
    bool mSeeking = false;
    /** If false, packets are skipped and only granule positions are read. */
    bool mSeekDone = true;
};

}  // namespace android
