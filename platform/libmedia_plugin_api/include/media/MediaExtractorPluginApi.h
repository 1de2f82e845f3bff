// SPDX-License-Identifier: Apache-2.0
#pragma once

// The interface between the media framework and an extractor plug-in: tables of C functions.
//
// The framework loads the plug-in's library and calls its function GETEXTRACTORDEF, of type
// GetExtractorDef, once. For every file it calls the sniff function of the returned record; if the
// plug-in wins, it calls the creator that the sniff function returned. The extractor's table and
// the tables of its tracks come from malloc; the framework calls their `free` entry, which frees
// what the table refers to, and then frees the table itself.
//
// Each function in a table takes the table's own `data` or `handle` first. The order of the entries
// is part of the binary interface.

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include <media/NdkMediaError.h>
#include <utils/Errors.h>

struct AMediaFormat;

namespace android {

extern "C" {

/** A source of bytes. Belongs to the framework and outlives the extractor made from it. */
struct CDataSource {
    /**
     * Returns the bytes read: fewer than `size` at the end of the data, 0 past it; negative on an
     * error.
     */
    ssize_t (*readAt)(void* handle, off64_t offset, void* data, size_t size);
    /** Stores the size in bytes and returns OK, or an error if it is not known. */
    status_t (*getSize)(void* handle, off64_t* size);
    uint32_t (*flags)(void* handle);
    /** Writes the zero-terminated name of the source; returns false if it had to be cut. */
    bool (*getUri)(void* handle, char* uriString, size_t bufferSize);
    void* handle;
};

/** Whether and how a read seeks first (SEEK, bits 0 to 2), and whether it may wait. */
enum CMediaTrackReadOptions : uint32_t {
    SEEK_PREVIOUS_SYNC = 0,
    SEEK_NEXT_SYNC = 1,
    SEEK_CLOSEST_SYNC = 2,
    SEEK_CLOSEST = 3,
    SEEK_FRAME_INDEX = 4,
    SEEK = 8,
    NONBLOCKING = 16,
};

/** A buffer of a buffer group. */
struct CMediaBuffer {
    void* handle;
    /** Returns the buffer to its group. */
    void (*release)(void* handle);
    void* (*data)(void* handle);
    size_t (*size)(void* handle);
    size_t (*range_offset)(void* handle);
    size_t (*range_length)(void* handle);
    void (*set_range)(void* handle, size_t offset, size_t length);
    /** The buffer's own format. A reused buffer keeps its entries. */
    AMediaFormat* (*meta_data)(void* handle);
};

/** The buffers of one track. Belongs to the framework. */
struct CMediaBufferGroup {
    void* handle;
    bool (*init)(void* handle, size_t buffers, size_t buffer_size, size_t growthLimit);
    void (*add_buffer)(void* handle, size_t size);
    media_status_t (*acquire_buffer)(void* handle, CMediaBuffer** buffer, bool nonBlocking,
                                     size_t requestedSize);
    bool (*has_buffers)(void* handle);
};

/** A track of an extractor. */
struct CMediaTrack {
    void* data;
    void (*free)(void* data);
    media_status_t (*start)(void* data, CMediaBufferGroup* bufferGroup);
    media_status_t (*stop)(void* data);
    media_status_t (*getFormat)(void* data, AMediaFormat* format);
    /**
     * Returns the next buffer, which the framework releases. `*buffer` is null on entry and is
     * written only together with AMEDIA_OK. `options` are bits of CMediaTrackReadOptions.
     */
    media_status_t (*read)(void* data, CMediaBuffer** buffer, uint32_t options, int64_t seekPosUs);
    bool (*supportsNonBlockingRead)(void* data);
};

/** An opened file. */
struct CMediaExtractor {
    void* data;
    void (*free)(void* data);
    size_t (*countTracks)(void* data);
    CMediaTrack* (*getTrack)(void* data, size_t index);
    media_status_t (*getTrackMetaData)(void* data, AMediaFormat* meta, size_t index,
                                       uint32_t flags);
    media_status_t (*getMetaData)(void* data, AMediaFormat* meta);
    uint32_t (*flags)(void* data);
    media_status_t (*setMediaCas)(void* data, const uint8_t* casToken, size_t size);
    /** The text must stay valid. */
    const char* (*name)(void* data);
};

/**
 * Opens a file that was sniffed; returns null if that fails. `meta` is freed right after the call.
 */
typedef CMediaExtractor* (*CreatorFunc)(CDataSource* source, void* meta);
typedef void (*FreeMetaFunc)(void* meta);

/**
 * Checks whether this plug-in can open a file. Returns null if not. Otherwise returns the creator
 * and writes `*confidence`, which is not initialised on entry. `*meta` and `*freeMeta`, null on
 * entry, are written if the creator needs data. The highest confidence above 0 wins.
 */
typedef CreatorFunc (*SnifferFunc)(CDataSource* source, float* confidence, void** meta,
                                   FreeMetaFunc* freeMeta);

typedef struct {
    const uint8_t b[16];
} media_uuid_t;

/** The plug-in's description of itself. */
struct ExtractorDef {
    /** One of the EXTRACTORDEF_VERSION constants; says which member of `u` is used. */
    const uint32_t def_version;
    /** Identifies the plug-in; not all zero. If two have the same UUID, the newer one is used. */
    media_uuid_t extractor_uuid;
    const uint32_t extractor_version;
    /** Not empty. Plug-ins are asked in the order of their names. */
    const char* extractor_name;
    union {
        struct {
            SnifferFunc sniff;
        } v2;
        struct {
            SnifferFunc sniff;
            /** File name extensions, ended by a null pointer; must not be null itself. */
            const char** supported_types;
        } v3;
    } u;
};

/** The first, C++ interface; refused by the framework. */
const uint32_t EXTRACTORDEF_VERSION_LEGACY = 1;
/** The C interface, with member `v2`. */
const uint32_t EXTRACTORDEF_VERSION_NDK_V1 = 2;
/** The C interface with the list of types, member `v3`. */
const uint32_t EXTRACTORDEF_VERSION_NDK_V2 = 3;
/** The newest. */
const uint32_t EXTRACTORDEF_VERSION = EXTRACTORDEF_VERSION_NDK_V2;

/** Type of the library's one exported function, GETEXTRACTORDEF. */
typedef ExtractorDef (*GetExtractorDef)();

}  // extern "C"

}  // namespace android
