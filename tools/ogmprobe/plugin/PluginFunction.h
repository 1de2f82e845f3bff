// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

/** The functions of a plug-in. */
enum class PluginFunction : uint32_t {
    kNone,
    kDefinition,
    kSniff,
    kFreeMeta,
    kCreate,
    kCountTracks,
    kName,
    kGetMetaData,
    kGetTrackMetaData,
    kGetTrack,
    kStart,
    kGetFormat,
    kRead,
    kStop,
    kFreeTrack,
    kFreeBuffers,
    kFreeExtractor,
};

constexpr PluginFunction lastOf(PluginFunction) {
    return PluginFunction::kFreeExtractor;
}

/** Returns a name for users: "read", "the track's free". */
const char* functionName(PluginFunction function);

}  // namespace ogmprobe
