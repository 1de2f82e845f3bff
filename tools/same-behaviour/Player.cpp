// SPDX-License-Identifier: Apache-2.0
#include "Player.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "MediaFormat.h"
#include "OggPage.h"
#include "Record.h"

namespace android::ogm::trace {

namespace {

/** With more, the 64 buffers of a group could run out, and a read would wait forever. */
constexpr size_t kMaxKept = 60;

int64_t int64Of(const AMediaFormat* format, const char* key) {
    const FormatValue* const value = findValue(format, key);
    const auto* const number = value == nullptr ? nullptr : std::get_if<int64_t>(value);
    return number == nullptr ? 0 : *number;
}

}  // namespace

Player::Player(GetExtractorDef entry, const Plan& plan)
    : mDefinition(entry()), mPlan(plan), mSource(plan) {}

void Player::play() {
    recordDefinition();
    for (const Step& step : mPlan.steps) {
        perform(step);
    }
    close();
}

void Player::recordDefinition() const {
    record(Kind::kResult, "definition %u, %s, version %u, \"%s\"", mDefinition.def_version,
           contentText(mDefinition.extractor_uuid.b, sizeof(mDefinition.extractor_uuid.b)).c_str(),
           mDefinition.extractor_version, mDefinition.extractor_name);
    for (const char** type = mDefinition.u.v3.supported_types; type != nullptr && *type != nullptr;
         ++type) {
        record(Kind::kResult, "type %s", *type);
    }
}

void Player::perform(const Step& step) {
    switch (step.action) {
        case Action::kSniff:
            (void)sniff(mSource.table());
            return;
        case Action::kOpen:
            open();
            return;
        case Action::kFreeTrack:
            freeSlot(slotOf(step));
            return;
        default:
            break;
    }
    if (mExtractor == nullptr) {
        return;
    }
    if (step.action >= Action::kStart && step.action < Action::kPlayerSeek) {
        if (PlayedTrack* const track = mSlots[slotOf(step)]) {
            performOnTrack(step, track);
        }
        return;
    }
    performOnFile(step);
}

size_t Player::slotOf(const Step& step) const {
    if (step.slot < kAnySlot) {
        return step.slot;
    }
    std::vector<size_t> used;
    for (size_t slot = 0; slot < kSlots; ++slot) {
        if (mSlots[slot] != nullptr) {
            used.push_back(slot);
        }
    }
    return used.empty() ? 0 : used[(step.slot - kAnySlot) % used.size()];
}

void Player::performOnFile(const Step& step) {
    CMediaExtractor* const file = mExtractor;
    switch (step.action) {
        case Action::kCountTracks:
            record(Kind::kCall, "count tracks");
            record(Kind::kResult, "%zu", file->countTracks(file->data));
            break;
        case Action::kFileFormat:
            fileFormat();
            break;
        case Action::kNullFileFormat:
            record(Kind::kCall, "get the file's format into null");
            record(Kind::kResult, "%d", file->getMetaData(file->data, nullptr));
            break;
        case Action::kFlags:
            record(Kind::kCall, "flags");
            record(Kind::kResult, "%u", file->flags(file->data));
            break;
        case Action::kName:
            record(Kind::kCall, "name");
            record(Kind::kResult, "%s", file->name(file->data));
            break;
        case Action::kMediaCas:
            record(Kind::kCall, "set media CAS");
            record(Kind::kResult, "%d", file->setMediaCas(file->data, nullptr, 0));
            break;
        case Action::kTrackFormat:
        case Action::kNullTrackFormat:
            trackFormat(step.number, step.options, step.action == Action::kNullTrackFormat);
            break;
        case Action::kGetTrack:
            getTrack(step.number);
            break;
        case Action::kPlayerSeek:
            playerSeek(step);
            break;
        case Action::kDrain:
            drain(step.number);
            break;
        default:
            freeExtractor();
            break;
    }
}

void Player::performOnTrack(const Step& step, PlayedTrack* track) {
    switch (step.action) {
        case Action::kStart:
            track->start();
            break;
        case Action::kStop:
            track->stop();
            break;
        case Action::kGetFormat:
        case Action::kNullGetFormat:
            track->getFormat(step.action == Action::kNullGetFormat);
            break;
        case Action::kNonBlocking:
            track->askNonBlocking();
            break;
        case Action::kReadAndKeep:
            if (track->keptCount() >= kMaxKept) {
                break;
            }
            if (Buffer* const buffer = track->read(step.options, timeOf(step))) {
                track->keep(buffer);
            }
            break;
        case Action::kReleaseKept:
            track->releaseKept();
            break;
        default:
            readRun(track, step);
            break;
    }
}

CreatorFunc Player::sniff(CDataSource* source) const {
    record(Kind::kCall, "sniff");
    float confidence = -1;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
    const CreatorFunc creator = mDefinition.u.v3.sniff(source, &confidence, &meta, &freeMeta);
    record(Kind::kResult, "%s, confidence %g, meta %s, free function %s",
           creator == nullptr ? "refused" : "accepted", static_cast<double>(confidence),
           meta == nullptr ? "null" : "set", freeMeta == nullptr ? "null" : "set");
    return creator;
}

/** Returns the function that opens files, even those that a sniff refuses. */
CreatorFunc Player::creator() const {
    Plan plan;
    plan.file = test::OggPage(1).beginOfStream().packet(test::bytesOf("\1video")).bytes();
    plan.size.stored = static_cast<int64_t>(plan.file.size());
    Source source(plan);
    return sniff(source.table());
}

void Player::open() {
    close();
    const CreatorFunc create = creator();
    if (create == nullptr) {
        recordEnd("the plug-in accepts no file");
    }
    record(Kind::kCall, "open");
    mExtractor = create(mSource.table(), nullptr);
    record(Kind::kResult, "%s", mExtractor == nullptr ? "null" : "an extractor");
}

void Player::fileFormat() {
    record(Kind::kCall, "get the file's format");
    AMediaFormat* const format = newFormat("the file's format");
    const media_status_t status = mExtractor->getMetaData(mExtractor->data, format);
    record(Kind::kResult, "%d %s", status, formatText(format).c_str());
    mDurationUs = int64Of(format, "durationUs");
}

void Player::trackFormat(size_t index, uint32_t flags, bool isNull) {
    record(Kind::kCall, "get the format of track %zu, flags %u%s", index, flags,
           isNull ? ", into null" : "");
    AMediaFormat* const format = isNull ? nullptr : newFormat("the format asked for");
    const media_status_t status =
            mExtractor->getTrackMetaData(mExtractor->data, format, index, flags);
    record(Kind::kResult, "%d %s", status, isNull ? "" : formatText(format).c_str());
}

void Player::getTrack(size_t index) {
    record(Kind::kCall, "get track %zu", index);
    CMediaTrack* const track = mExtractor->getTrack(mExtractor->data, index);
    record(Kind::kResult, "%s", track == nullptr ? "null" : "a track");
    if (track == nullptr) {
        return;
    }
    freeSlot(mNextSlot);
    const std::string name =
            "slot " + std::to_string(mNextSlot) + ", track " + std::to_string(++mTracksMade);
    mSlots[mNextSlot] =
            mTracks.emplace_back(std::make_unique<PlayedTrack>(track, name, mPlan.groupFault))
                    .get();
    mNextSlot = (mNextSlot + 1) % kSlots;
}

void Player::freeSlot(size_t slot) {
    if (PlayedTrack* const track = std::exchange(mSlots[slot], nullptr)) {
        track->free();
    }
}

void Player::freeExtractor() {
    CMediaExtractor* const extractor = std::exchange(mExtractor, nullptr);
    record(Kind::kCall, "free the extractor");
    extractor->free(extractor->data);
    ::free(extractor);
    record(Kind::kResult, "freed");
}

void Player::close() {
    for (size_t slot = 0; slot < kSlots; ++slot) {
        freeSlot(slot);
    }
    if (mExtractor != nullptr) {
        freeExtractor();
    }
}

void Player::readRun(PlayedTrack* track, const Step& step) {
    uint32_t options = step.options;
    for (size_t i = 0; i < step.number; ++i) {
        Buffer* const buffer = track->read(options, timeOf(step));
        if (buffer == nullptr) {
            return;
        }
        giveBack(buffer);
        options &= ~uint32_t{SEEK};
    }
}

void Player::playerSeek(const Step& step) {
    int64_t timeUs = timeOf(step);
    for (PlayedTrack* const track : mSlots) {
        if (track == nullptr || !track->isStarted()) {
            continue;
        }
        if (Buffer* const buffer = track->read(SEEK | step.options, timeUs)) {
            timeUs = std::max<int64_t>(int64Of(formatOf(*buffer), "timeUs"), 0);
            giveBack(buffer);
        }
    }
}

void Player::drain(size_t rounds) {
    for (size_t round = 0; round < rounds; ++round) {
        bool any = false;
        for (PlayedTrack* const track : mSlots) {
            if (track == nullptr || !track->isStarted()) {
                continue;
            }
            if (Buffer* const buffer = track->read(NONBLOCKING, 0)) {
                any = true;
                giveBack(buffer);
            }
        }
        // A track that reaches the end of the file reports this once before it returns its packets.
        if (!any && round > 0) {
            return;
        }
    }
}

int64_t Player::timeOf(const Step& step) const {
    return fuzz::seekTimeUs(step.time, mDurationUs);
}

}  // namespace android::ogm::trace
