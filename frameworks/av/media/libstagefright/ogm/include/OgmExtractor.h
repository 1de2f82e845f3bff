// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * The OGM extractor and its tracks.
 *
 * An OgmExtractor is made for an opened file; its constructor reads the header pages, the duration
 * and the codec configuration. The framework then asks for formats, makes an OgmTrack for each
 * track it wants to play, and reads from it one packet or access unit after the other. All tracks
 * of a file share one cursor over its pages: whichever track needs data moves it, and every packet
 * met on the way goes into the queue of the track it belongs to.
 *
 * Threads: `read` of all tracks of one extractor may be called at the same time from any threads;
 * they take turns. Formats may be asked for meanwhile. Callers serialise everything else, among
 * itself and against every `read` of the same extractor: making a track, its `start` and `stop`,
 * its destruction (which stops it), and the destruction of the extractor, which must outlive its
 * tracks.
 *
 * LOG_TAG must be defined before this header is included.
 */

#include <media/MediaExtractorPluginHelper.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/MediaBuffer.h>
#include <utils/RefBase.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "base/Fifo.h"
#include "base/Format.h"
#include "base/PacketStorage.h"

namespace android {

class OgmBufferQueue;
class OgmEsQueue;
class OgmTrack;

/** What a logical stream carries. The numbers are fixed: logs and dumps show them. */
enum OgmStreamType : uint32_t {
    OGA_AUDIO_MP3 = 1,
    OGA_AUDIO_AAC = 3,
    OGA_AUDIO_WMA = 4,
    OGA_AUDIO_PCM = 5,
    OGA_AUDIO_MPEG = 6,  // layers I and II
    OGA_AUDIO_AC3 = 7,
    OGA_AUDIO_DTS = 8,
    OGA_AUDIO_ADPCM = 9,
    OGV_VIDEO_MP4 = 18,   // MPEG-4 part 2
    OGV_VIDEO_MPEG = 19,  // MPEG-1 and MPEG-2
    OGV_VIDEO_H264 = 22,
    OGV_VIDEO_DIVX = 23,
    OGV_VIDEO_WMV = 24,
    OGV_VIDEO_VP8 = 25,
    OGV_VIDEO_MJPEG = 26,
    OGM_TYPE_UNKNOWN = 30,  // no track is made of it
};

/** The header of an Ogg page (RFC 3533, section 6) without the checksum, which is not looked at. */
struct OgmPage {
    static constexpr size_t kFixedHeaderSize = 27;
    static constexpr size_t kMaxSegments = 255;

    static constexpr uint8_t kContinuedPacket = 0x01;
    static constexpr uint8_t kFirstPage = 0x02;

    uint64_t mGranulePosition = 0;
    uint32_t mSerialNo = 0;
    uint32_t mPageNo = 0;
    uint8_t mFlags = 0;
    uint8_t mNumSegments = 0;
    /** The first mNumSegments values count. */
    std::array<uint8_t, kMaxSegments> mLacing{};
    /** Lacing values below 255: packets that end on the page. */
    uint32_t mNumPackets = 0;

    /** Bytes in front of the body. */
    int64_t headerSize() const { return int64_t{kFixedHeaderSize} + mNumSegments; }
};

/** A logical stream that became a track. */
struct OgmStreamInfo {
    uint32_t mSerialNo = 0;
    uint32_t mType = OGM_TYPE_UNKNOWN;
    /** In 100 ns; for video the duration of a frame. */
    int64_t mTimeUnit = 0;
    /** Audio: sample rate in Hz. Video: frames a second. */
    int64_t mSampleRate = 0;
    ogm::FormatPtr mFormat;
};

/** One item of a track's queue: a packet with its OGM packet header, or one audio access unit. */
struct OgmPacket {
    uint32_t serialNo = 0;
    /** Empty while the packet is still being assembled. */
    ogm::ByteBuffer bytes;
    int64_t timeUs = 0;
    int64_t granulePosition = 0;
    /** Video only: 1 for a sync frame, otherwise what the frame typing found; 0 when unknown. */
    int32_t frameType = 0;
};

/** A frame that was cut out of an elementary stream. */
struct AccessUnit {
    ogm::ByteBuffer bytes;
    /** -1 for a unit of no bytes. */
    int64_t timeUs = -1;
};

/** The bytes of an elementary stream that arrived with one time. */
struct RangeInfo {
    int64_t mTimestampUs = 0;
    /** Bytes of the range that have not been taken yet. */
    uint64_t mLength = 0;
};

class OgmExtractor : public MediaExtractorPluginHelper {
  public:
    /** Opens the file; never fails: what cannot be read is missing afterwards. */
    explicit OgmExtractor(std::unique_ptr<DataSourceHelper> dataSource);
    ~OgmExtractor() override;

    size_t countTracks() override;
    /** Null for an index out of range. The caller owns the track. */
    MediaTrackHelper* getTrack(size_t index) override;
    /** AMEDIA_ERROR_UNKNOWN for an index out of range. */
    media_status_t getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags) override;
    media_status_t getMetaData(AMediaFormat* format) override;

    // Pages.

    /**
     * Reads the page header at `offset` (the start of a page) into `page`.
     * Returns the size of the whole page in bytes, or a negative media_status_t: MALFORMED without
     * capture pattern or with undefined flags, UNSUPPORTED for another version, IO when the header
     * or the lacing table is cut off. Only after a failed read of the lacing table has `page` been
     * changed by a failure.
     */
    int64_t readPage(int64_t offset, OgmPage* page);

    /**
     * Searches for the next capture pattern at or after `offset`, byte by byte.
     * Returns AMEDIA_OK, END_OF_STREAM at the end of the data, or UNSUPPORTED when none begins
     * within `maxSkip` bytes (no limit below 1); `foundOffset` is 0 then.
     */
    media_status_t FindPage(int64_t offset, int64_t* foundOffset, int64_t maxSkip);

    /**
     * Moves the cursor to the next page at or after `offset`, and to the end of the data when there
     * is none; every track starts its timing anew. Returns AMEDIA_OK, UNSUPPORTED (nothing changed)
     * when no page begins within `maxSkip` bytes, or END_OF_STREAM for a page of no size.
     */
    media_status_t seekToPage(int64_t offset, int64_t maxSkip);

    // Opening.

    /**
     * Makes a track of a stream's first packet. Returns AMEDIA_OK, also for a Vorbis header, of
     * which no track is made, and AMEDIA_ERROR_UNSUPPORTED for everything else.
     */
    media_status_t parseOgmHeader(const MediaBuffer& buffer, uint32_t serialNo);

    /** Finds the duration among the pages at the end of the file; puts it into all formats. */
    void parseMaxTime();

    /**
     * Builds the ESDS of an MPEG-4 video stream from the headers in front of its first picture.
     * `rawBuffer` holds the stream's bytes so far; what precedes the headers is removed from it.
     * Returns AMEDIA_OK, UNSUPPORTED when more bytes are needed, or MALFORMED.
     */
    media_status_t configureMpeg4Video(uint32_t serialNo, ogm::ByteBuffer* rawBuffer);

    /**
     * Learns MIME type and layer of an MPEG audio stream from its first confirmed frame.
     * Returns AMEDIA_OK, or MALFORMED when `data` does not hold one yet.
     */
    media_status_t configureMpegAudio(uint32_t serialNo, ogm::ByteView data);

    // Reading. The caller holds lock().

    std::mutex& lock() { return mExtractorLock; }

    /**
     * Moves on by one packet and hands it to its track. Returns AMEDIA_OK, END_OF_STREAM, or IO
     * when the packet's bytes are cut off (it is tried again by the next call).
     */
    media_status_t readNextPacket();

    /** Granule position of the next page of the stream after the current page; END_OF_STREAM. */
    media_status_t getNextGranulePosition(uint32_t serialNo, uint64_t* granulePosition);

    /** Moves the cursor to about three seconds before `timeUs`. Always 0. */
    int32_t seekToTime(int64_t timeUs);

    /** How far the furthest track has come; 0 as long as one of them does not know. */
    int64_t getCurrentTimeUs() const;

    // For tracks.

    void trackStart(int32_t serialNo, OgmTrack* track);
    void trackStop(int32_t serialNo);
    /** Forgets the track wherever it is still registered; its serial number stays registered. */
    void trackDestroyed(const OgmTrack* track);

    /** The stream's record, the first one where two have the serial number; null for none. */
    OgmStreamInfo* findStream(uint32_t serialNo);

    /** MIME type of a stream, which is settled once the file is open; empty when it is not known.
     */
    std::string mimeOf(uint32_t serialNo);

    /**
     * Copies a stream's format, with the duration as it is now; AMEDIA_ERROR_MALFORMED for a serial
     * number without a record.
     */
    media_status_t copyFormat(uint32_t serialNo, AMediaFormat* format);

    bool isSelected(uint32_t serialNo) const {
        return static_cast<uint32_t>(mSelectedSerialNo) == serialNo;
    }
    bool isSeeking() const { return mSeeking; }
    void setSeeking(bool seeking) { mSeeking = seeking; }
    bool isPastFirstDataPage() const { return mCurrentPageOffset > mFirstDataPageOffset; }

  private:
    media_status_t parseHeaderPages();
    media_status_t readStreamHeader(int64_t pageOffset, int64_t pageSize, const OgmPage& page);
    media_status_t addVideoStream(ogm::ByteView packet, uint32_t serialNo);
    media_status_t addAudioStream(ogm::ByteView packet, uint32_t serialNo);

    void collectCodecConfigs();
    media_status_t collectCodecConfig(const OgmStreamInfo& stream);
    bool appendPagePayload(int64_t pageOffset, int64_t pageSize, const OgmPage& page,
                           ogm::ByteBuffer* rawBuffer, ogm::SteppedCapacity* capacity);

    /** Goes back to the start of currPage's body. */
    void rewindPage();
    media_status_t enterNextPage();
    OgmTrack* findStartedTrack(uint32_t serialNo) const;
    media_status_t refreshGranules(OgmTrack* track);
    media_status_t cutPacket(OgmTrack* track);

    int64_t estimateOffset(int64_t targetUs) const;
    void scanToTime(int64_t seekUs);
    void resetTracks();

    /** Held for the whole of every read. */
    std::mutex mExtractorLock;
    /** Held while a stream's format is changed or copied, and never while anything is read. */
    std::mutex mFormatLock;

    // The file, known once it has been opened.
    std::unique_ptr<DataSourceHelper> mDataSource;
    int64_t mDataSourceSize = 0;
    int64_t mDuration = 0;
    /** The first page that begins no stream, or the junk in front of it. */
    int64_t mFirstDataPageOffset = 0;
    /** Of the stream header accepted last; every PCM track is made with it. */
    uint16_t mBitsPerSample = 0;
    std::vector<OgmStreamInfo> mTracks;

    // The cursor.
    /** 0 until the cursor has been set. */
    int64_t mCurrentPageOffset = 0;
    OgmPage currPage;
    /** What readPage returned for currPage: a size, or a negative status that is taken for one. */
    int64_t mCurrentPageSize = 0;
    /** Next lacing value of currPage to use. */
    uint64_t mCurrentSegment = 0;
    /** Where its bytes begin in the body of currPage. */
    int64_t mCurrentBodyOffset = 0;
    /** Room for a piece that nobody keeps. */
    ogm::ByteBuffer mPassingPiece;

    // Seeking.
    /** The track that moves the cursor when it seeks; -1 for none. */
    int32_t mSelectedSerialNo = -1;
    /** While set, packets of audio tracks are dropped. */
    bool mSeeking = false;
    /** While clear, pages are passed over and only their granule positions are followed. */
    bool mSeekDone = true;

    bool mHasVideo = false;
    bool mThumbnailTimeSet = false;

    /** The tracks that receive packets, not owned; null where a registered track was destroyed. */
    std::map<uint32_t, OgmTrack*> mStartedTracks;
};

/**
 * One track. The framework's wrapper owns it and sets mBufferGroup before `start`; it must never be
 * held by an sp<>, which would delete it a second time.
 */
class OgmTrack : public MediaTrackHelper, public RefBase {
  public:
    OgmTrack(OgmExtractor* extractor, uint32_t serialNo, uint32_t type, uint16_t bitsPerSample);
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

    void setSampleRate(int32_t sampleRate) { mSampleRate = sampleRate; }
    void setTimeUnit(int32_t unit100ns) { mTimeUnit = unit100ns; }

    // Called by the extractor while it reads.

    /** Notes the granule position of a page that has been entered, and its average a packet. */
    void updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket);
    /** Sets the timing to what it is before the first page. */
    void resetPageState();
    /** Room in the queue's storage for a piece of `size` bytes, or for a frame. */
    ogm::ByteBuffer makePiece(size_t size) { return mStorage.take(size, mPacketsQue.size()); }
    /** For the piece made latest, if it has not been moved away. */
    void giveBack(ogm::ByteBuffer piece) { mStorage.giveBack(std::move(piece)); }
    /**
     * Takes a piece of a packet; `isNewPacket` for one that begins a packet. The piece may be moved
     * away. Returns AMEDIA_OK, also for a piece that is dropped, or AMEDIA_ERROR_MALFORMED.
     */
    media_status_t appendData(ogm::ByteBuffer* packet, bool isNewPacket);
    /** Drops all that is queued; the granule positions stay. */
    void signalDiscontinuity();
    /** Presentation time at the cursor, 0 when it is not known. */
    int64_t currentTimeUs() const;

    // Access units of re-framed audio.

    /**
     * Adds bytes of an elementary stream that have the time `timeUs`; at the start of an empty
     * buffer those in front of the first sync word are dropped. The bytes may be moved away.
     * Returns AMEDIA_OK, or AMEDIA_ERROR_MALFORMED (nothing added) without a sync word.
     */
    media_status_t appendAudioData(ogm::ByteBuffer* data, int64_t timeUs);
    /** The next whole access unit; nothing when there is none yet. */
    std::optional<AccessUnit> dequeueAccessUnit();
    /**
     * Takes `size` bytes off the front of the time ranges and returns the time of the first; -1 for
     * no bytes.
     */
    int64_t fetchTimestamp(uint64_t size);

    // Frames.

    /** Frame type of a finished packet, its header included: see OgmPacket::frameType. */
    int32_t getVideoFrameType(ogm::ByteView packet) const;
    /** Takes the oldest packet; null, and the packet stays, when it cannot be handed out. */
    MediaBufferHelper* dequeueFrame(int64_t targetTimeUs);
    /** Complete packets of frame type 3 directly behind the oldest one. */
    uint8_t countFollowingFrameType3() const;

  private:
    media_status_t appendAccessUnits(ogm::ByteBuffer* piece, bool isNewPacket);
    bool computePacketTime(size_t size, int64_t* timeUs);
    int64_t computeSampleTime(size_t size);
    /** Granule position of the next packet if each takes up `averagePerPacket`. */
    uint64_t packetPosition(uint64_t averagePerPacket) const;
    int64_t sampleTimeUs(uint64_t averagePerPacket) const;
    void closeOpenPacket();
    void openPacket(int64_t timeUs);
    void queuePacket(int64_t timeUs, ogm::ByteBuffer bytes);
    void appendPacketBytes(ogm::ByteBuffer* piece);
    void dropQueued();

    std::optional<size_t> findFirstSync(ogm::ByteView data) const;
    uint64_t takeFromFrontRange(uint64_t size);
    std::optional<AccessUnit> dequeueAccessUnitMpegAudio();
    std::optional<AccessUnit> dequeueAccessUnitAC3();
    std::optional<AccessUnit> dequeueAccessUnitDTS();
    bool lockMpegAudio(ogm::ByteView data, uint64_t* offset);
    void discardBuffer();
    std::optional<size_t> findNextDtsSync(size_t from);
    ogm::ByteBuffer takeFrame(size_t offset, size_t size);
    ogm::ByteBuffer copy(ogm::ByteView bytes);
    void dropBuffered(size_t size);
    void learnFormat(uint32_t header, int32_t sampleRate, int32_t channels);

    void logGetFormat() const;
    media_status_t fillQueue();
    media_status_t takePacket(MediaBufferHelper** buffer);
    media_status_t reworkPcm(MediaBufferHelper** buffer);
    media_status_t widenPcm(MediaBufferHelper** buffer);
    void dumpAudio(MediaBufferHelper* buffer) const;
    MediaBufferHelper* acquireBuffer(size_t size);
    std::optional<size_t> frameHeaderSize(ogm::ByteView packet) const;
    void correctTime(OgmPacket* packet) const;

    enum class SyncSearch { kFound, kDrained, kTooLate };

    /** The MIME type as log lines take it: null when it is not known. */
    const char* mimeText() const { return mMime.empty() ? nullptr : mMime.c_str(); }

    media_status_t seek(int64_t timeUs);
    media_status_t findSyncFrame(int64_t seekUs);
    media_status_t fillForSyncFrame(bool* endOfFile);
    SyncSearch dropUntilSyncFrame(int64_t searchUs);
    void stepBack(int64_t seekUs, int8_t* retries, int64_t* searchUs);

    // Set when the track is made.
    OgmExtractor* const mExtractor;
    const uint32_t mSerialNo;
    const uint32_t mType;
    const uint16_t mBitsPerSample;
    /** For the log; empty when the extractor does not know the stream. */
    const std::string mMime;
    int32_t mSampleRate = 0;
    int32_t mTimeUnit = 0;
    bool mDumpAudio = false;
    /** Read with its property and acted on by nothing. */
    bool mDumpVideo = false;
    std::unique_ptr<OgmEsQueue> mEsQueue;
    std::unique_ptr<OgmBufferQueue> mBufferQueue;

    bool mStopped = false;

    // Timing: the granule positions of two pages and the packets counted on them.
    uint64_t mCurGranulePosition = 0;
    uint64_t mPreGranulePosition = 0;
    uint64_t mBaseAvgGranPos = 0;
    uint64_t averGranulePosition = 1;
    uint8_t mPageGranuleDelta = 0;
    uint8_t mPrePageSamplesOut = 0;
    uint8_t mCurrentPageSamplesOut = 0;
    bool mGranuleValid = false;

    // Queues. mLock is held where they are filled and where they are dropped.
    std::mutex mLock;
    /** The packet being assembled; for re-framed audio the elementary stream not yet cut. */
    ogm::ByteBuffer mPacketBuff;
    /** Of the packets in mPacketsQue. */
    ogm::PacketStorage mStorage;
    ogm::SteppedCapacity mPacketCapacity;
    /** Up to here no frame of re-framed audio begins in mPacketBuff but at its start. */
    size_t mSearched = 0;
    ogm::Fifo<RangeInfo> mRangeInfos;
    /** Oldest first. The last one is still open, but for re-framed audio. */
    ogm::Fifo<OgmPacket> mPacketsQue;
    uint64_t NumOfVPackets = 0;

    // MPEG audio: the header that all frames must agree with, and the format of the first frame.
    uint32_t mMP3Header = 0;
    ogm::FormatPtr mFormat;

    /** Set by a seek to a time other than 0; read by nothing. */
    bool mSeekRequested = false;
};

}  // namespace android
