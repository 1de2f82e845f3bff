// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginApi.h>

#include "ScriptMaker.h"

namespace android::ogm::trace {

namespace {

void addFileQueries(std::vector<Step>* steps) {
    for (const Action action : {Action::kCountTracks, Action::kName, Action::kFlags,
                                Action::kMediaCas, Action::kFileFormat}) {
        steps->push_back({action});
    }
}

void addStep(const fuzz::Call& call, std::vector<Step>* steps) {
    constexpr uint32_t kModes = 7;
    using fuzz::Operation;
    const size_t track = call.track();
    const uint8_t detail = call.detail();
    switch (call.operation) {
        case Operation::kSniff:
            steps->push_back({Action::kSniff});
            break;
        case Operation::kOpen:
            steps->push_back({Action::kOpen});
            addFileQueries(steps);
            break;
        case Operation::kTrackMetaData:
            steps->push_back({Action::kTrackFormat, 0, track, detail});
            break;
        case Operation::kGetTrack:
            steps->push_back({Action::kGetTrack, 0, track});
            break;
        case Operation::kStart:
            steps->push_back({Action::kStart, track});
            break;
        case Operation::kStop:
            steps->push_back({Action::kStop, track});
            break;
        case Operation::kGetFormat:
            steps->push_back({Action::kGetFormat, track});
            break;
        case Operation::kRead:
            steps->push_back({Action::kRead, track, 1, detail & uint32_t{NONBLOCKING}});
            break;
        case Operation::kSeek:
            steps->push_back({Action::kRead, track, 1, SEEK | (detail & kModes), call.time});
            break;
        case Operation::kReadRun:
            steps->push_back({Action::kRead, track, detail});
            break;
        case Operation::kReadAndKeep:
            steps->push_back({Action::kReadAndKeep, track});
            break;
        case Operation::kReleaseKept:
            steps->push_back({Action::kReleaseKept, track});
            break;
        case Operation::kFreeTrack:
            steps->push_back({Action::kFreeTrack, track});
            break;
        case Operation::kFileQueries:
            addFileQueries(steps);
            break;
        case Operation::kPlayerSeek:
            steps->push_back({Action::kPlayerSeek, 0, 0, detail & kModes, call.time});
            break;
        case Operation::kDrain:
            steps->push_back({Action::kDrain, 0, call.time & size_t{0xFF}});
            break;
    }
}

}  // namespace

std::vector<Step> scriptOf(const fuzz::SessionInput& input) {
    if (input.calls.empty()) {
        return playerScript();
    }
    std::vector<Step> steps;
    for (const fuzz::Call& call : input.calls) {
        addStep(call, &steps);
    }
    return steps;
}

}  // namespace android::ogm::trace
