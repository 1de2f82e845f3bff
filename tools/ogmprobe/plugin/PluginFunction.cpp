// SPDX-License-Identifier: Apache-2.0
#include "plugin/PluginFunction.h"

namespace ogmprobe {

const char* functionName(PluginFunction function) {
    switch (function) {
        case PluginFunction::kNone:
            break;
        case PluginFunction::kDefinition:
            return "GETEXTRACTORDEF";
        case PluginFunction::kSniff:
            return "sniff";
        case PluginFunction::kFreeMeta:
            return "freeMeta";
        case PluginFunction::kCreate:
            return "create";
        case PluginFunction::kCountTracks:
            return "countTracks";
        case PluginFunction::kName:
            return "name";
        case PluginFunction::kGetMetaData:
            return "getMetaData";
        case PluginFunction::kGetTrackMetaData:
            return "getTrackMetaData";
        case PluginFunction::kGetTrack:
            return "getTrack";
        case PluginFunction::kStart:
            return "start";
        case PluginFunction::kGetFormat:
            return "getFormat";
        case PluginFunction::kRead:
            return "read";
        case PluginFunction::kStop:
            return "stop";
        case PluginFunction::kFreeTrack:
            return "the track's free";
        case PluginFunction::kFreeBuffers:
            return "the release of its buffers";
        case PluginFunction::kFreeExtractor:
            return "the extractor's free";
    }
    return "no function";
}

}  // namespace ogmprobe
