// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** The limits beyond which something is a fault. */
namespace ogmprobe::check::threshold {

/** A larger distance of audio and video is noticeable (ITU-R BT.1359 has a similar value). */
inline constexpr int64_t kAudioAgainstVideoUs = 80'000;

/**
 * Pictures with the same time are shown at once, and then none for some time. Not noticeable up to
 * this time.
 */
inline constexpr int64_t kStandstillUs = 100'000;

/** Up to this many lost packets or frames of a track are not noticeable. */
inline constexpr uint64_t kUnnoticedLosses = 2;
/** A track that loses a larger part of them cannot be watched or listened to. */
inline constexpr double kBearableLoss = 0.5;

/** A larger distance of sync frames makes seeking coarse. Encoders' defaults are below it. */
inline constexpr int64_t kSyncDistanceUs = 15'000'000;

/** Shorter streams do not show a bitrate. */
inline constexpr int64_t kMinBitrateSpanUs = 1'000'000;

}  // namespace ogmprobe::check::threshold
