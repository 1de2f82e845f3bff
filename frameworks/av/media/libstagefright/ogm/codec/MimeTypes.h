// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * Names that the platform's media library lacks. They are in the plug-in's namespace, so a tree
 * that adds the same names still builds.
 */
namespace android::ogm {

inline constexpr const char* MEDIA_MIMETYPE_VIDEO_DIVX4 = "video/divx4";
inline constexpr const char* MEDIA_MIMETYPE_VIDEO_WMV = "video/x-ms-wmv";

/** Reported for every file, even without video. */
inline constexpr const char* kContainerMimeType = "video/ogm";

}  // namespace android::ogm

extern "C" {

/** int32: 1 to 3 for MPEG audio layers I to III. Exported by the maker's libmediandk.zor.so. */
extern const char* AMEDIAFORMAT_KEY_MPEG_AUD_LAYER;

}  // extern "C"
