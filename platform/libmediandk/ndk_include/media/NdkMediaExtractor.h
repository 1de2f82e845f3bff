/* SPDX-License-Identifier: Apache-2.0 */
#pragma once

/*
 * A media file for an app: its tracks with their formats, and the samples of the selected tracks in
 * the order of their times.
 *
 *     AMediaExtractor* extractor = AMediaExtractor_new();
 *     AMediaExtractor_setDataSourceFd(extractor, fd, 0, size);
 *     AMediaExtractor_selectTrack(extractor, 0);
 *     while (AMediaExtractor_getSampleTrackIndex(extractor) >= 0) {
 *         AMediaExtractor_readSampleData(extractor, buffer, capacity);
 *         AMediaExtractor_advance(extractor);
 *     }
 *     AMediaExtractor_delete(extractor);
 *
 * Only the functions that are used here are declared; the device's library has more. The desktop's
 * versions need a plug-in, so they are in tools/ogmdump, beside the program that uses them.
 */

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include <media/NdkMediaError.h>
#include <media/NdkMediaFormat.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

struct AMediaExtractor;
typedef struct AMediaExtractor AMediaExtractor;

/** Flags of AMediaExtractor_getSampleFlags(). */
enum {
    AMEDIAEXTRACTOR_SAMPLE_FLAG_SYNC = 1,
    AMEDIAEXTRACTOR_SAMPLE_FLAG_ENCRYPTED = 2,
};

/** Where a seek lands. */
typedef enum {
    AMEDIAEXTRACTOR_SEEK_PREVIOUS_SYNC = 0,
    AMEDIAEXTRACTOR_SEEK_NEXT_SYNC = 1,
    AMEDIAEXTRACTOR_SEEK_CLOSEST_SYNC = 2,
} SeekMode;

AMediaExtractor* AMediaExtractor_new();
media_status_t AMediaExtractor_delete(AMediaExtractor*);

/** Opens `length` bytes of an open file. The caller keeps the descriptor. */
media_status_t AMediaExtractor_setDataSourceFd(AMediaExtractor*, int fd, off64_t offset,
                                               off64_t length);

size_t AMediaExtractor_getTrackCount(AMediaExtractor*);
/** Returns a new format, which the caller deletes. */
AMediaFormat* AMediaExtractor_getTrackFormat(AMediaExtractor*, size_t index);
/** Includes the track's samples from now on. */
media_status_t AMediaExtractor_selectTrack(AMediaExtractor*, size_t index);

/* The current sample. If there is none, as at the end, these return -1, or 0 for the flags. */
int AMediaExtractor_getSampleTrackIndex(AMediaExtractor*);
int64_t AMediaExtractor_getSampleTime(AMediaExtractor*);
uint32_t AMediaExtractor_getSampleFlags(AMediaExtractor*);
ssize_t AMediaExtractor_getSampleSize(AMediaExtractor*);
/** Copies the sample and returns its size; -1 also if it is larger than the capacity. */
ssize_t AMediaExtractor_readSampleData(AMediaExtractor*, uint8_t* buffer, size_t capacity);

/** Moves to the next sample; returns false if there is none. */
bool AMediaExtractor_advance(AMediaExtractor*);
/** Moves all selected tracks. */
media_status_t AMediaExtractor_seekTo(AMediaExtractor*, int64_t seekPosUs, SeekMode mode);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
