// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <utility>

#include "MediaFormat.h"
#include "Player.h"
#include "Record.h"

namespace android::ogm::trace {

PlayedTrack::PlayedTrack(CMediaTrack* track, std::string name, const GroupFault& groupFault)
    : mTrack(track), mName(std::move(name)), mGroup("group of " + mName, groupFault) {}

void PlayedTrack::start() {
    record(Kind::kCall, "%s: start", mName.c_str());
    const media_status_t status = mTrack->start(mTrack->data, mGroup.table());
    record(Kind::kResult, "%d", status);
    mStarted = true;
}

void PlayedTrack::stop() {
    record(Kind::kCall, "%s: stop", mName.c_str());
    const media_status_t status = mTrack->stop(mTrack->data);
    record(Kind::kResult, "%d", status);
}

void PlayedTrack::getFormat(bool isNull) {
    record(Kind::kCall, "%s: get format%s", mName.c_str(), isNull ? " into null" : "");
    AMediaFormat* const format = isNull ? nullptr : newFormat("the format asked for");
    const media_status_t status = mTrack->getFormat(mTrack->data, format);
    record(Kind::kResult, "%d %s", status, isNull ? "" : formatText(format).c_str());
}

void PlayedTrack::askNonBlocking() {
    record(Kind::kCall, "%s: supports non-blocking read", mName.c_str());
    record(Kind::kResult, "%d", mTrack->supportsNonBlockingRead(mTrack->data));
}

Buffer* PlayedTrack::read(uint32_t options, int64_t timeUs) {
    record(Kind::kCall, "%s: read, options %u, time %lld", mName.c_str(), options,
           static_cast<long long>(timeUs));
    CMediaBuffer* table = nullptr;
    const media_status_t status = mTrack->read(mTrack->data, &table, options, timeUs);
    Buffer* const buffer = table == nullptr ? nullptr : bufferOf(table);
    record(Kind::kResult, "%d %s", status,
           buffer == nullptr ? "no buffer" : describe(*buffer).c_str());
    return buffer;
}

void PlayedTrack::releaseKept() {
    for (Buffer* const buffer : mKept) {
        giveBack(buffer);
    }
    mKept.clear();
}

void PlayedTrack::free() {
    record(Kind::kCall, "%s: free", mName.c_str());
    mTrack->free(mTrack->data);
    ::free(mTrack);
    record(Kind::kResult, "freed");
    releaseKept();
}

}  // namespace android::ogm::trace
