/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * A media format: a list of named values that describe a file, a track or a buffer.
 *
 *     AMediaFormat* format = AMediaFormat_new();
 *     AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, "audio/mpeg");
 *     AMediaFormat_setInt32(format, AMEDIAFORMAT_KEY_SAMPLE_RATE, 44100);
 *     ...
 *     AMediaFormat_delete(format);
 *
 * Entries keep the order in which their names first appeared; names differ by case. Each entry has
 * the type of the function that set it, and only the getter of that type finds it. Setting a name
 * again replaces its value and type. A format holds at most 256 entries; one more ends the process
 * through the log's assertion.
 *
 * There are no locks: two threads must not use the same format at the same time.
 */

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include <media/NdkMediaError.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

struct AMediaFormat;
typedef struct AMediaFormat AMediaFormat;

/** Returns a new format without entries. The caller owns it. */
AMediaFormat* AMediaFormat_new();

/** Deletes a format; null is allowed. Returns AMEDIA_OK. */
media_status_t AMediaFormat_delete(AMediaFormat*);

/**
 * Returns the entries as text, "name: type(value)" each. The text belongs to the format and is
 * valid until the next call of this function or AMediaFormat_delete().
 */
const char* AMediaFormat_toString(AMediaFormat*);

/*
 * The getters return false, with the output untouched, if there is no entry of that name and type.
 */
bool AMediaFormat_getInt32(AMediaFormat*, const char* name, int32_t* out);
bool AMediaFormat_getInt64(AMediaFormat*, const char* name, int64_t* out);
bool AMediaFormat_getFloat(AMediaFormat*, const char* name, float* out);
bool AMediaFormat_getSize(AMediaFormat*, const char* name, size_t* out);
bool AMediaFormat_getDouble(AMediaFormat*, const char* name, double* out);
bool AMediaFormat_getRect(AMediaFormat*, const char* name, int32_t* left, int32_t* top,
                          int32_t* right, int32_t* bottom);

/**
 * The bytes belong to the format and to its copies: bytes written through the pointer change in all
 * of them. The pointer is valid while any of them has the entry.
 */
bool AMediaFormat_getBuffer(AMediaFormat*, const char* name, void** data, size_t* size);

/**
 * The text belongs to the format. It stays unchanged, even if the entry changes, until the next
 * AMediaFormat_getString() of the same name or AMediaFormat_delete(). Callers should rely on it
 * only until the next AMediaFormat_getString() of any name.
 */
bool AMediaFormat_getString(AMediaFormat*, const char* name, const char** out);

void AMediaFormat_setInt32(AMediaFormat*, const char* name, int32_t value);
void AMediaFormat_setInt64(AMediaFormat*, const char* name, int64_t value);
void AMediaFormat_setFloat(AMediaFormat*, const char* name, float value);
void AMediaFormat_setSize(AMediaFormat*, const char* name, size_t value);
void AMediaFormat_setDouble(AMediaFormat*, const char* name, double value);
void AMediaFormat_setRect(AMediaFormat*, const char* name, int32_t left, int32_t top, int32_t right,
                          int32_t bottom);

/** Copies the text, which must not be null. */
void AMediaFormat_setString(AMediaFormat*, const char* name, const char* value);

/** Copies the bytes; with a size of 0 the entry is empty. */
void AMediaFormat_setBuffer(AMediaFormat*, const char* name, const void* data, size_t size);

/** Removes all entries. */
void AMediaFormat_clear(AMediaFormat*);

/**
 * Clears `to`, then adds every entry of `from`: a format copied onto itself ends up empty. Returns
 * AMEDIA_OK, or AMEDIA_ERROR_INVALID_PARAMETER if either is null.
 */
media_status_t AMediaFormat_copy(AMediaFormat* to, AMediaFormat* from);

/*
 * Names of entries. The pointers are variables of the library, so they are not compile-time
 * constants.
 */
/* Since API level 21. */
extern const char* AMEDIAFORMAT_KEY_AAC_PROFILE;
extern const char* AMEDIAFORMAT_KEY_BIT_RATE;
extern const char* AMEDIAFORMAT_KEY_CHANNEL_COUNT;
extern const char* AMEDIAFORMAT_KEY_CHANNEL_MASK;
extern const char* AMEDIAFORMAT_KEY_COLOR_FORMAT;
extern const char* AMEDIAFORMAT_KEY_DURATION;
extern const char* AMEDIAFORMAT_KEY_FLAC_COMPRESSION_LEVEL;
extern const char* AMEDIAFORMAT_KEY_FRAME_RATE;
extern const char* AMEDIAFORMAT_KEY_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_IS_ADTS;
extern const char* AMEDIAFORMAT_KEY_IS_AUTOSELECT;
extern const char* AMEDIAFORMAT_KEY_IS_DEFAULT;
extern const char* AMEDIAFORMAT_KEY_IS_FORCED_SUBTITLE;
extern const char* AMEDIAFORMAT_KEY_I_FRAME_INTERVAL;
extern const char* AMEDIAFORMAT_KEY_LANGUAGE;
extern const char* AMEDIAFORMAT_KEY_MAX_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_MAX_INPUT_SIZE;
extern const char* AMEDIAFORMAT_KEY_MAX_WIDTH;
extern const char* AMEDIAFORMAT_KEY_MIME;
extern const char* AMEDIAFORMAT_KEY_PUSH_BLANK_BUFFERS_ON_STOP;
extern const char* AMEDIAFORMAT_KEY_REPEAT_PREVIOUS_FRAME_AFTER;
extern const char* AMEDIAFORMAT_KEY_SAMPLE_RATE;
extern const char* AMEDIAFORMAT_KEY_STRIDE;
extern const char* AMEDIAFORMAT_KEY_WIDTH;

/* Since API level 28. */
extern const char* AMEDIAFORMAT_KEY_AAC_DRC_ATTENUATION_FACTOR;
extern const char* AMEDIAFORMAT_KEY_AAC_DRC_BOOST_FACTOR;
extern const char* AMEDIAFORMAT_KEY_AAC_DRC_HEAVY_COMPRESSION;
extern const char* AMEDIAFORMAT_KEY_AAC_DRC_TARGET_REFERENCE_LEVEL;
extern const char* AMEDIAFORMAT_KEY_AAC_ENCODED_TARGET_LEVEL;
extern const char* AMEDIAFORMAT_KEY_AAC_MAX_OUTPUT_CHANNEL_COUNT;
extern const char* AMEDIAFORMAT_KEY_AAC_SBR_MODE;
extern const char* AMEDIAFORMAT_KEY_AUDIO_SESSION_ID;
extern const char* AMEDIAFORMAT_KEY_BITRATE_MODE;
extern const char* AMEDIAFORMAT_KEY_CAPTURE_RATE;
extern const char* AMEDIAFORMAT_KEY_COLOR_RANGE;
extern const char* AMEDIAFORMAT_KEY_COLOR_STANDARD;
extern const char* AMEDIAFORMAT_KEY_COLOR_TRANSFER;
extern const char* AMEDIAFORMAT_KEY_COMPLEXITY;
extern const char* AMEDIAFORMAT_KEY_CSD;
extern const char* AMEDIAFORMAT_KEY_CSD_0;
extern const char* AMEDIAFORMAT_KEY_CSD_1;
extern const char* AMEDIAFORMAT_KEY_CSD_2;
extern const char* AMEDIAFORMAT_KEY_DISPLAY_CROP;
extern const char* AMEDIAFORMAT_KEY_DISPLAY_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_DISPLAY_WIDTH;
extern const char* AMEDIAFORMAT_KEY_GRID_COLUMNS;
extern const char* AMEDIAFORMAT_KEY_GRID_ROWS;
extern const char* AMEDIAFORMAT_KEY_HDR_STATIC_INFO;
extern const char* AMEDIAFORMAT_KEY_INTRA_REFRESH_PERIOD;
extern const char* AMEDIAFORMAT_KEY_LATENCY;
extern const char* AMEDIAFORMAT_KEY_LEVEL;
extern const char* AMEDIAFORMAT_KEY_OPERATING_RATE;
extern const char* AMEDIAFORMAT_KEY_PCM_ENCODING;
extern const char* AMEDIAFORMAT_KEY_PRIORITY;
extern const char* AMEDIAFORMAT_KEY_PROFILE;
extern const char* AMEDIAFORMAT_KEY_ROTATION;
extern const char* AMEDIAFORMAT_KEY_SEI;
extern const char* AMEDIAFORMAT_KEY_SLICE_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_TEMPORAL_LAYERING;
extern const char* AMEDIAFORMAT_KEY_TEMPORAL_LAYER_ID;
extern const char* AMEDIAFORMAT_KEY_TILE_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_TILE_WIDTH;
extern const char* AMEDIAFORMAT_KEY_TIME_US;
extern const char* AMEDIAFORMAT_KEY_TRACK_ID;
extern const char* AMEDIAFORMAT_KEY_TRACK_INDEX;

/* Since API level 29. */
extern const char* AMEDIAFORMAT_KEY_ALBUM;
extern const char* AMEDIAFORMAT_KEY_ALBUMART;
extern const char* AMEDIAFORMAT_KEY_ALBUMARTIST;
extern const char* AMEDIAFORMAT_KEY_ARTIST;
extern const char* AMEDIAFORMAT_KEY_AUDIO_PRESENTATION_INFO;
extern const char* AMEDIAFORMAT_KEY_AUTHOR;
extern const char* AMEDIAFORMAT_KEY_BITS_PER_SAMPLE;
extern const char* AMEDIAFORMAT_KEY_CDTRACKNUMBER;
extern const char* AMEDIAFORMAT_KEY_COMPILATION;
extern const char* AMEDIAFORMAT_KEY_COMPOSER;
extern const char* AMEDIAFORMAT_KEY_CREATE_INPUT_SURFACE_SUSPENDED;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_DEFAULT_IV_SIZE;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_ENCRYPTED_BYTE_BLOCK;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_ENCRYPTED_SIZES;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_IV;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_KEY;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_MODE;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_PLAIN_SIZES;
extern const char* AMEDIAFORMAT_KEY_CRYPTO_SKIP_BYTE_BLOCK;
extern const char* AMEDIAFORMAT_KEY_CSD_AVC;
extern const char* AMEDIAFORMAT_KEY_CSD_HEVC;
extern const char* AMEDIAFORMAT_KEY_D263;
extern const char* AMEDIAFORMAT_KEY_DATE;
extern const char* AMEDIAFORMAT_KEY_DISCNUMBER;
extern const char* AMEDIAFORMAT_KEY_ENCODER_DELAY;
extern const char* AMEDIAFORMAT_KEY_ENCODER_PADDING;
extern const char* AMEDIAFORMAT_KEY_ESDS;
extern const char* AMEDIAFORMAT_KEY_EXIF_OFFSET;
extern const char* AMEDIAFORMAT_KEY_EXIF_SIZE;
extern const char* AMEDIAFORMAT_KEY_FRAME_COUNT;
extern const char* AMEDIAFORMAT_KEY_GENRE;
extern const char* AMEDIAFORMAT_KEY_HAPTIC_CHANNEL_COUNT;
extern const char* AMEDIAFORMAT_KEY_HDR10_PLUS_INFO;
extern const char* AMEDIAFORMAT_KEY_ICC_PROFILE;
extern const char* AMEDIAFORMAT_KEY_IS_SYNC_FRAME;
extern const char* AMEDIAFORMAT_KEY_LOCATION;
extern const char* AMEDIAFORMAT_KEY_LOOP;
extern const char* AMEDIAFORMAT_KEY_LYRICIST;
extern const char* AMEDIAFORMAT_KEY_MANUFACTURER;
extern const char* AMEDIAFORMAT_KEY_MAX_BIT_RATE;
extern const char* AMEDIAFORMAT_KEY_MAX_FPS_TO_ENCODER;
extern const char* AMEDIAFORMAT_KEY_MAX_PTS_GAP_TO_ENCODER;
extern const char* AMEDIAFORMAT_KEY_MPEG2_STREAM_HEADER;
extern const char* AMEDIAFORMAT_KEY_MPEG_USER_DATA;
extern const char* AMEDIAFORMAT_KEY_PCM_BIG_ENDIAN;
extern const char* AMEDIAFORMAT_KEY_PSSH;
extern const char* AMEDIAFORMAT_KEY_SAR_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_SAR_WIDTH;
extern const char* AMEDIAFORMAT_KEY_TARGET_TIME;
extern const char* AMEDIAFORMAT_KEY_TEMPORAL_LAYER_COUNT;
extern const char* AMEDIAFORMAT_KEY_TEXT_FORMAT_DATA;
extern const char* AMEDIAFORMAT_KEY_THUMBNAIL_CSD_HEVC;
extern const char* AMEDIAFORMAT_KEY_THUMBNAIL_HEIGHT;
extern const char* AMEDIAFORMAT_KEY_THUMBNAIL_TIME;
extern const char* AMEDIAFORMAT_KEY_THUMBNAIL_WIDTH;
extern const char* AMEDIAFORMAT_KEY_TITLE;
extern const char* AMEDIAFORMAT_KEY_VALID_SAMPLES;
extern const char* AMEDIAFORMAT_KEY_YEAR;

/* Since API level 30. */
extern const char* AMEDIAFORMAT_KEY_LOW_LATENCY;

/* Since API level 31. */
extern const char* AMEDIAFORMAT_KEY_CSD_AV1C;
extern const char* AMEDIAFORMAT_KEY_LAST_SAMPLE_INDEX_IN_CHUNK;
extern const char* AMEDIAFORMAT_KEY_SAMPLE_FILE_OFFSET;
extern const char* AMEDIAFORMAT_KEY_SAMPLE_TIME_BEFORE_APPEND;
extern const char* AMEDIAFORMAT_KEY_SLOW_MOTION_MARKERS;
extern const char* AMEDIAFORMAT_KEY_THUMBNAIL_CSD_AV1C;
extern const char* AMEDIAFORMAT_KEY_XMP_OFFSET;
extern const char* AMEDIAFORMAT_KEY_XMP_SIZE;

/* Since API level 32. */
extern const char* AMEDIAFORMAT_KEY_MPEGH_COMPATIBLE_SETS;
extern const char* AMEDIAFORMAT_KEY_MPEGH_PROFILE_LEVEL_INDICATION;
extern const char* AMEDIAFORMAT_KEY_MPEGH_REFERENCE_CHANNEL_LAYOUT;

/*
 * Only declared: the library of API level 33 does not define them, so a program that uses one
 * cannot be linked.
 */
extern const char* AMEDIAFORMAT_KEY_AUDIO_PRESENTATION_PRESENTATION_ID;
extern const char* AMEDIAFORMAT_KEY_AUDIO_PRESENTATION_PROGRAM_ID;
extern const char* AMEDIAFORMAT_KEY_PICTURE_TYPE;
extern const char* AMEDIAFORMAT_KEY_VIDEO_ENCODING_STATISTICS_LEVEL;
extern const char* AMEDIAFORMAT_KEY_VIDEO_QP_AVERAGE;
extern const char* AMEDIAFORMAT_VIDEO_QP_B_MAX;
extern const char* AMEDIAFORMAT_VIDEO_QP_B_MIN;
extern const char* AMEDIAFORMAT_VIDEO_QP_I_MAX;
extern const char* AMEDIAFORMAT_VIDEO_QP_I_MIN;
extern const char* AMEDIAFORMAT_VIDEO_QP_MAX;
extern const char* AMEDIAFORMAT_VIDEO_QP_MIN;
extern const char* AMEDIAFORMAT_VIDEO_QP_P_MAX;
extern const char* AMEDIAFORMAT_VIDEO_QP_P_MIN;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
