// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

/** What the plug-in can be busy with. */
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

/** As people know it: "read", "the track's free". */
const char* functionName(PluginFunction function);

}  // namespace ogmprobe
