// SPDX-License-Identifier: Apache-2.0
#pragma once

// C++ classes for both directions of the plug-in interface. A plug-in derives its extractor and
// tracks from MediaExtractorPluginHelper and MediaTrackHelper and returns them with wrap(). It uses
// the framework's tables through DataSourceHelper, MediaBufferGroupHelper and MediaBufferHelper.
//
// This header includes the log macros: define LOG_TAG before including it.

#include <arpa/inet.h>
#include <stdio.h>
#include <stdlib.h>

#include <map>
#include <utility>

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>
#include <utils/Errors.h>
#include <utils/Log.h>
#include <utils/RefBase.h>

namespace android {

class MediaTrackHelper;
class MediaExtractorPluginHelper;

/**
 * A buffer of a track's group. Exists as long as its MediaBufferGroupHelper. Deleting it does not
 * release the buffer, and releasing the buffer does not delete it.
 */
class MediaBufferHelper {
  public:
    MediaBufferHelper(CMediaBuffer* buf) : mBuffer(buf) {}
    virtual ~MediaBufferHelper() = default;

    virtual void release() { mBuffer->release(mBuffer->handle); }
    virtual void* data() { return mBuffer->data(mBuffer->handle); }
    virtual size_t size() { return mBuffer->size(mBuffer->handle); }
    virtual size_t range_offset() { return mBuffer->range_offset(mBuffer->handle); }
    virtual size_t range_length() { return mBuffer->range_length(mBuffer->handle); }
    virtual void set_range(size_t offset, size_t length) {
        mBuffer->set_range(mBuffer->handle, offset, length);
    }
    virtual AMediaFormat* meta_data() { return mBuffer->meta_data(mBuffer->handle); }

  private:
    friend CMediaTrack* wrap(MediaTrackHelper* track);

    CMediaBuffer* mBuffer;
};

/** The buffer group of a track. Owns the helpers of its buffers. Has no lock. */
class MediaBufferGroupHelper {
  public:
    MediaBufferGroupHelper(CMediaBufferGroup* group) : mGroup(group) {}
    ~MediaBufferGroupHelper() {
        for (const auto& entry : mBufferHelpers) {
            delete entry.second;
        }
    }
    MediaBufferGroupHelper(const MediaBufferGroupHelper&) = delete;
    MediaBufferGroupHelper& operator=(const MediaBufferGroupHelper&) = delete;

    bool init(size_t buffers, size_t buffer_size, size_t growthLimit = 0) {
        return mGroup->init(mGroup->handle, buffers, buffer_size, growthLimit);
    }

    void add_buffer(size_t size) { mGroup->add_buffer(mGroup->handle, size); }

    /** Returns the group's status; `*buffer` is null if that is not AMEDIA_OK or no buffer came. */
    media_status_t acquire_buffer(MediaBufferHelper** buffer, bool nonBlocking = false,
                                  size_t requestedSize = 0) {
        CMediaBuffer* acquired = nullptr;
        const media_status_t status =
                mGroup->acquire_buffer(mGroup->handle, &acquired, nonBlocking, requestedSize);
        *buffer = status == AMEDIA_OK && acquired != nullptr ? helperOf(acquired) : nullptr;
        return status;
    }

    bool has_buffers() { return mGroup->has_buffers(mGroup->handle); }

  private:
    MediaBufferHelper* helperOf(CMediaBuffer* buffer) {
        MediaBufferHelper*& helper = mBufferHelpers[buffer];
        if (helper == nullptr) {
            helper = new MediaBufferHelper(buffer);
        }
        return helper;
    }

    CMediaBufferGroup* mGroup;
    std::map<CMediaBuffer*, MediaBufferHelper*> mBufferHelpers;
};

/** A track of a plug-in's extractor. */
class MediaTrackHelper {
  public:
    MediaTrackHelper() : mBufferGroup(nullptr) {}
    /** Deletes the group helper, after the destructor of the derived class. */
    virtual ~MediaTrackHelper() { delete mBufferGroup; }
    MediaTrackHelper(const MediaTrackHelper&) = delete;
    MediaTrackHelper& operator=(const MediaTrackHelper&) = delete;

    /** What a read shall do besides returning the next buffer. */
    class ReadOptions {
      public:
        enum SeekMode : int32_t {
            SEEK_PREVIOUS_SYNC = CMediaTrackReadOptions::SEEK_PREVIOUS_SYNC,
            SEEK_NEXT_SYNC = CMediaTrackReadOptions::SEEK_NEXT_SYNC,
            SEEK_CLOSEST_SYNC = CMediaTrackReadOptions::SEEK_CLOSEST_SYNC,
            SEEK_CLOSEST = CMediaTrackReadOptions::SEEK_CLOSEST,
            SEEK_FRAME_INDEX = CMediaTrackReadOptions::SEEK_FRAME_INDEX,
        };

        ReadOptions(uint32_t options, int64_t seekPosUs)
            : mOptions(options), mSeekPosUs(seekPosUs) {}

        /**
         * Whether to seek first, and if so where to and how. The mode is passed on unchanged: it
         * may have a value that is not one of the names.
         */
        bool getSeekTo(int64_t* time_us, SeekMode* mode) const {
            constexpr uint32_t kModeMask = 7;
            if ((mOptions & CMediaTrackReadOptions::SEEK) == 0) {
                return false;
            }
            *time_us = mSeekPosUs;
            *mode = static_cast<SeekMode>(mOptions & kModeMask);
            return true;
        }

        bool getNonBlocking() const {
            return (mOptions & CMediaTrackReadOptions::NONBLOCKING) != 0;
        }

      private:
        uint32_t mOptions;
        int64_t mSeekPosUs;
    };

    /** The group helper is set before and is valid until the next start or the track's end. */
    virtual media_status_t start() = 0;
    virtual media_status_t stop() = 0;
    virtual media_status_t getFormat(AMediaFormat* format) = 0;
    /** `*buffer` is null on entry. */
    virtual media_status_t read(MediaBufferHelper** buffer,
                                const ReadOptions* options = nullptr) = 0;
    virtual bool supportsNonBlockingRead() { return false; }

  protected:
    friend CMediaTrack* wrap(MediaTrackHelper* track);

    MediaBufferGroupHelper* mBufferGroup;
};

/**
 * Returns the C table of a track, from malloc; null for null. The table's `free` deletes only the
 * track; the receiver frees the table itself.
 */
inline CMediaTrack* wrap(MediaTrackHelper* track) {
    if (track == nullptr) {
        return nullptr;
    }
    auto* table = static_cast<CMediaTrack*>(malloc(sizeof(CMediaTrack)));
    table->data = track;
    table->free = [](void* data) { delete static_cast<MediaTrackHelper*>(data); };
    table->start = [](void* data, CMediaBufferGroup* bufferGroup) {
        auto* self = static_cast<MediaTrackHelper*>(data);
        // A track may be started again after it was stopped.
        delete self->mBufferGroup;
        self->mBufferGroup = new MediaBufferGroupHelper(bufferGroup);
        return self->start();
    };
    table->stop = [](void* data) { return static_cast<MediaTrackHelper*>(data)->stop(); };
    table->getFormat = [](void* data, AMediaFormat* format) {
        return static_cast<MediaTrackHelper*>(data)->getFormat(format);
    };
    table->read = [](void* data, CMediaBuffer** buffer, uint32_t options, int64_t seekPosUs) {
        const MediaTrackHelper::ReadOptions readOptions(options, seekPosUs);
        MediaBufferHelper* helper = nullptr;
        const media_status_t status =
                static_cast<MediaTrackHelper*>(data)->read(&helper, &readOptions);
        if (status == AMEDIA_OK && helper != nullptr) {
            *buffer = helper->mBuffer;
        }
        return status;
    };
    table->supportsNonBlockingRead = [](void* data) {
        return static_cast<MediaTrackHelper*>(data)->supportsNonBlockingRead();
    };
    return table;
}

/** An opened file of a plug-in. */
class MediaExtractorPluginHelper {
  public:
    virtual ~MediaExtractorPluginHelper() = default;

    virtual size_t countTracks() = 0;
    /** Returns a new track, or null. */
    virtual MediaTrackHelper* getTrack(size_t index) = 0;

    enum GetTrackMetaDataFlags {
        kIncludeExtensiveMetaData = 1,
    };
    virtual media_status_t getTrackMetaData(AMediaFormat* meta, size_t index,
                                            uint32_t flags = 0) = 0;

    /** Returns the format of the file as a whole. */
    virtual media_status_t getMetaData(AMediaFormat* meta) = 0;

    enum Flags {
        CAN_SEEK_BACKWARD = 1,
        CAN_SEEK_FORWARD = 2,
        CAN_PAUSE = 4,
        CAN_SEEK = 8,
    };
    /** All flags are set unless overridden. */
    virtual uint32_t flags() const {
        return CAN_SEEK_BACKWARD | CAN_SEEK_FORWARD | CAN_SEEK | CAN_PAUSE;
    }

    virtual media_status_t setMediaCas(const uint8_t* /*casToken*/, size_t /*size*/) {
        return AMEDIA_ERROR_INVALID_OPERATION;
    }

    /** The text must stay valid. */
    virtual const char* name() { return "<unspecified>"; }

  protected:
    MediaExtractorPluginHelper() = default;

  private:
    MediaExtractorPluginHelper(const MediaExtractorPluginHelper&) = delete;
    MediaExtractorPluginHelper& operator=(const MediaExtractorPluginHelper&) = delete;
};

/** Returns the C table, from malloc, of an extractor that must not be null; as for tracks. */
inline CMediaExtractor* wrap(MediaExtractorPluginHelper* extractor) {
    auto* table = static_cast<CMediaExtractor*>(malloc(sizeof(CMediaExtractor)));
    table->data = extractor;
    table->free = [](void* data) { delete static_cast<MediaExtractorPluginHelper*>(data); };
    table->countTracks = [](void* data) {
        return static_cast<MediaExtractorPluginHelper*>(data)->countTracks();
    };
    table->getTrack = [](void* data, size_t index) {
        return wrap(static_cast<MediaExtractorPluginHelper*>(data)->getTrack(index));
    };
    table->getTrackMetaData = [](void* data, AMediaFormat* meta, size_t index, uint32_t flags) {
        return static_cast<MediaExtractorPluginHelper*>(data)->getTrackMetaData(meta, index, flags);
    };
    table->getMetaData = [](void* data, AMediaFormat* meta) {
        return static_cast<MediaExtractorPluginHelper*>(data)->getMetaData(meta);
    };
    table->flags = [](void* data) {
        return static_cast<MediaExtractorPluginHelper*>(data)->flags();
    };
    table->setMediaCas = [](void* data, const uint8_t* casToken, size_t size) {
        return static_cast<MediaExtractorPluginHelper*>(data)->setMediaCas(casToken, size);
    };
    table->name = [](void* data) { return static_cast<MediaExtractorPluginHelper*>(data)->name(); };
    return table;
}

/** A source of bytes, which belongs to the framework. Has no lock. */
class DataSourceHelper {
  public:
    explicit DataSourceHelper(CDataSource* csource) : mSource(csource) {}
    /** Reads the same source as the other helper, but not through that helper. */
    explicit DataSourceHelper(DataSourceHelper* source) : mSource(source->mSource) {}
    virtual ~DataSourceHelper() = default;

    /**
     * Returns the bytes read: fewer than `size` at the end of the data, 0 past it; negative on an
     * error.
     */
    virtual ssize_t readAt(off64_t offset, void* data, size_t size) {
        return mSource->readAt(mSource->handle, offset, data, size);
    }

    /** Stores the size in bytes and returns OK, or an error if it is not known. */
    virtual status_t getSize(off64_t* size) { return mSource->getSize(mSource->handle, size); }

    virtual uint32_t flags() { return mSource->flags(mSource->handle); }

    /** Writes the zero-terminated name of the source; returns false if it had to be cut. */
    bool getUri(char* uriString, size_t bufferSize) {
        return mSource->getUri(mSource->handle, uriString, bufferSize);
    }

    // Read big-endian numbers. Return false and set `*x` to 0 unless all bytes could be read.
    bool getUInt16(off64_t offset, uint16_t* x) { return getBigEndian<2>(offset, x); }
    bool getUInt24(off64_t offset, uint32_t* x) { return getBigEndian<3>(offset, x); }
    bool getUInt32(off64_t offset, uint32_t* x) { return getBigEndian<4>(offset, x); }
    bool getUInt64(off64_t offset, uint64_t* x) { return getBigEndian<8>(offset, x); }

    // The same with a width of `size` bytes, the full or half width of `*x`. Return false for other
    // sizes. These, and half a width that could not be read, leave `*x` unchanged.
    bool getUInt16Var(off64_t offset, uint16_t* x, size_t size) {
        return getFullOrHalf<uint8_t>(offset, x, size);
    }
    bool getUInt32Var(off64_t offset, uint32_t* x, size_t size) {
        return getFullOrHalf<uint16_t>(offset, x, size);
    }
    bool getUInt64Var(off64_t offset, uint64_t* x, size_t size) {
        return getFullOrHalf<uint32_t>(offset, x, size);
    }

  protected:
    CDataSource* mSource;

  private:
    template <size_t width, typename UInt>
    bool getBigEndian(off64_t offset, UInt* x) {
        uint8_t bytes[width];
        *x = 0;
        if (readAt(offset, bytes, width) != static_cast<ssize_t>(width)) {
            return false;
        }
        uint64_t number = 0;
        for (const uint8_t byte : bytes) {
            number = number << 8 | byte;
        }
        *x = static_cast<UInt>(number);
        return true;
    }

    template <typename Half, typename UInt>
    bool getFullOrHalf(off64_t offset, UInt* x, size_t size) {
        if (size == sizeof(UInt)) {
            return getBigEndian<sizeof(UInt)>(offset, x);
        }
        Half half = 0;
        if (size != sizeof(Half) || !getBigEndian<sizeof(Half)>(offset, &half)) {
            return false;
        }
        *x = half;
        return true;
    }
};

/** Parts of UUID(); nothing for other callers. */
namespace uuid_text {

constexpr size_t kTextLength = 36;
constexpr size_t kByteCount = 16;

// Not a constant expression: an invalid text does not compile where a constant is needed.
[[noreturn]] inline void invalidCharacter() {
    abort();
}

constexpr uint8_t digitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return static_cast<uint8_t>(digit - '0');
    }
    if (digit >= 'a' && digit <= 'f') {
        return static_cast<uint8_t>(digit - 'a' + 10);
    }
    if (digit >= 'A' && digit <= 'F') {
        return static_cast<uint8_t>(digit - 'A' + 10);
    }
    invalidCharacter();
}

constexpr bool isDashPosition(size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

struct Bytes {
    uint8_t values[kByteCount];
};

constexpr Bytes parse(const char* text) {
    Bytes bytes = {};
    size_t digitCount = 0;
    for (size_t i = 0; i < kTextLength; ++i) {
        if (isDashPosition(i)) {
            if (text[i] != '-') {
                invalidCharacter();
            }
            continue;
        }
        uint8_t& byte = bytes.values[digitCount / 2];
        byte = static_cast<uint8_t>(byte << 4 | digitValue(text[i]));
        ++digitCount;
    }
    return bytes;
}

template <size_t... indices>
constexpr media_uuid_t toUuid(const Bytes& bytes, std::index_sequence<indices...>) {
    return {{bytes.values[indices]...}};
}

}  // namespace uuid_text

/**
 * Returns the UUID of a text like "12345678-9abc-def0-1234-56789abcdef0", its bytes in text order.
 */
template <size_t size>
constexpr media_uuid_t UUID(const char (&text)[size]) {
    static_assert(size == uuid_text::kTextLength + 1, "a UUID has 36 characters");
    return uuid_text::toUuid(uuid_text::parse(text),
                             std::make_index_sequence<uuid_text::kByteCount>());
}

}  // namespace android
