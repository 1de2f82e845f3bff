// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** From where on something is a fault. */
namespace ogmprobe::check::threshold {

/** Audio and video that are further apart are seen to be (ITU-R BT.1359 puts it near). */
inline constexpr int64_t kAudioAgainstVideoUs = 80'000;

/** Pictures of one time are shown at once, and none for some time after: up to here it is not seen.
 */
inline constexpr int64_t kStandstillUs = 100'000;

/** So few lost packets or frames of a track are noticed by nobody. */
inline constexpr uint64_t kUnnoticedLosses = 2;
/** A track that loses a larger part of them cannot be watched or listened to. */
inline constexpr double kBearableLoss = 0.5;

/** Sync frames that are further apart make seeking coarse. Encoders' defaults stay below. */
inline constexpr int64_t kSyncDistanceUs = 15'000'000;

/** Shorter streams say nothing about a bitrate. */
inline constexpr int64_t kLeastBitrateSpanUs = 1'000'000;

}  // namespace ogmprobe::check::threshold
