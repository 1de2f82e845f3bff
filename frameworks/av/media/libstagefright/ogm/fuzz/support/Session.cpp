// SPDX-License-Identifier: Apache-2.0
#include "Session.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "Bytes.h"
#include "Ends.h"
#include "OggPage.h"

namespace android {
extern "C" ExtractorDef GETEXTRACTORDEF();
}

namespace android::ogm::fuzz {

namespace {

constexpr uint32_t kAllFlags = 15;
constexpr float kConfidence = 0.5F;
constexpr char kAc3[] = "audio/ac3";

std::string mimeOf(AMediaFormat* format) {
    const char* mime = nullptr;
    require(AMediaFormat_getString(format, AMEDIAFORMAT_KEY_MIME, &mime), "no MIME type");
    return mime;
}

/** The function that opens files. It comes from a sniff of an accepted file and is used for all. */
CreatorFunc creator() {
    static const CreatorFunc function = [] {
        const Bytes page =
                test::OggPage(1).beginOfStream().packet(test::bytesOf("\1video")).bytes();
        const SessionInput input;
        ScriptedSource source(input, page);
        float confidence = 0;
        return GETEXTRACTORDEF().u.v3.sniff(source.table(), &confidence, nullptr, nullptr);
    }();
    return function;
}

}  // namespace

Session::Session(const SessionInput& input, const Bytes& file)
    : mCreator(creator()), mInput(input), mSource(input, file) {}

Session::~Session() {
    close();
}

void Session::run() {
    if (mInput.calls.empty()) {
        usual();
        return;
    }
    for (const Call& call : mInput.calls) {
        mSource.beginCall();
        perform(call);
    }
}

/** What a player does: sniff, open, play, seek, play on. */
void Session::usual() {
    constexpr Call kCalls[] = {{Operation::kSniff, 0, 0},         {Operation::kOpen, 0, 0},
                               {Operation::kFileQueries, 0, 0},   {Operation::kTrackMetaData, 0, 0},
                               {Operation::kTrackMetaData, 9, 0}, {Operation::kTrackMetaData, 7, 0},
                               {Operation::kGetTrack, 0, 0},      {Operation::kGetTrack, 1, 0},
                               {Operation::kGetTrack, 2, 0},      {Operation::kGetTrack, 7, 0},
                               {Operation::kGetFormat, 0, 0},     {Operation::kStart, 0, 0},
                               {Operation::kStart, 1, 0},         {Operation::kStart, 2, 0},
                               {Operation::kDrain, 0, 200},       {Operation::kPlayerSeek, 0, 45},
                               {Operation::kDrain, 0, 40},        {Operation::kStop, 0, 0},
                               {Operation::kSeek, 1, 0},          {Operation::kDrain, 0, 20},
                               {Operation::kStart, 0, 0},         {Operation::kSeek, 0, 10},
                               {Operation::kReadAndKeep, 0, 0},   {Operation::kReadRun, 0xF8, 0}};
    for (const Call& call : kCalls) {
        mSource.beginCall();
        perform(call);
    }
}

void Session::perform(const Call& call) {
    switch (call.operation) {
        case Operation::kSniff:
            (void)sniff();
            return;
        case Operation::kOpen:
            open();
            return;
        default:
            break;
    }
    if (mExtractor == nullptr) {
        return;
    }
    switch (call.operation) {
        case Operation::kTrackMetaData:
            getTrackMetaData(call.track(), call.detail());
            break;
        case Operation::kGetTrack:
            getTrack(call.track());
            break;
        case Operation::kFileQueries:
            queryFile();
            break;
        case Operation::kPlayerSeek:
            playerSeek(call);
            break;
        case Operation::kDrain:
            drain(call.time & 0xFF);
            break;
        case Operation::kFreeTrack:
            mSlots[call.track()].reset();
            break;
        default:
            if (const auto& track = mSlots[call.track()]) {
                performOnTrack(call, *track);
            }
            break;
    }
}

void Session::performOnTrack(const Call& call, TrackSlot& track) {
    switch (call.operation) {
        case Operation::kStart:
            track.start();
            break;
        case Operation::kStop:
            track.stop();
            break;
        case Operation::kGetFormat:
            track.checkFormat();
            break;
        case Operation::kRead:
            readRun(track, 1, call.detail() & NONBLOCKING, 0);
            break;
        case Operation::kSeek:
            readRun(track, 1, SEEK | (call.detail() & 7U), timeOf(call));
            break;
        case Operation::kReadRun:
            readRun(track, call.detail(), 0, 0);
            break;
        case Operation::kReadAndKeep:
            if (const ReadOutcome outcome = read(track, 0, 0); outcome.buffer != nullptr) {
                track.keep(outcome.buffer);
            }
            break;
        case Operation::kReleaseKept:
            track.releaseKept();
            break;
        default:
            break;
    }
}

CreatorFunc Session::sniff() {
    const ExtractorDef definition = GETEXTRACTORDEF();
    float confidence = -1;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
    const CreatorFunc creator =
            definition.u.v3.sniff(mSource.table(), &confidence, &meta, &freeMeta);
    require(confidence == (creator == nullptr ? 0.0F : kConfidence), "the confidence is odd");
    require(meta == nullptr && freeMeta == nullptr, "a sniff hands something on");
    return creator;
}

/** Opens the file, even if the sniff refused it, as callers other than the framework might. */
void Session::open() {
    close();
    mExtractor = mCreator(mSource.table(), nullptr);
    require(mExtractor != nullptr, "a file cannot be opened");
    queryFile();
}

void Session::close() {
    for (auto& slot : mSlots) {
        slot.reset();
    }
    if (mExtractor != nullptr) {
        mExtractor->free(mExtractor->data);
        ::free(std::exchange(mExtractor, nullptr));
    }
}

void Session::queryFile() {
    (void)mExtractor->countTracks(mExtractor->data);
    require(std::strcmp(mExtractor->name(mExtractor->data), "<unspecified>") == 0, "a name");
    require(mExtractor->flags(mExtractor->data) == kAllFlags, "every file can be sought in");
    const uint8_t token = 0;
    require(mExtractor->setMediaCas(mExtractor->data, &token, 1) == AMEDIA_ERROR_INVALID_OPERATION,
            "no file is scrambled");
    const FormatPtr format(AMediaFormat_new());
    require(mExtractor->getMetaData(mExtractor->data, format.get()) == AMEDIA_OK,
            "a file has no format");
    require(mimeOf(format.get()) == "video/ogm", "the type of a file is odd");
    require(AMediaFormat_getInt64(format.get(), AMEDIAFORMAT_KEY_DURATION, &mDurationUs),
            "a file has no duration");
    require(mDurationUs >= 0, "a duration is negative");
}

void Session::getTrackMetaData(size_t index, uint32_t flags) {
    const FormatPtr format(AMediaFormat_new());
    const media_status_t status =
            mExtractor->getTrackMetaData(mExtractor->data, format.get(), index, flags);
    const bool exists = index < mExtractor->countTracks(mExtractor->data);
    require(status == (exists ? AMEDIA_OK : AMEDIA_ERROR_UNKNOWN), "the status of a format");
    if (exists) {
        (void)mimeOf(format.get());
    }
}

void Session::getTrack(size_t index) {
    CMediaTrack* const track = mExtractor->getTrack(mExtractor->data, index);
    const bool exists = index < mExtractor->countTracks(mExtractor->data);
    require((track != nullptr) == exists, "there are other tracks than counted");
    if (!exists) {
        return;
    }
    const FormatPtr format(AMediaFormat_new());
    (void)mExtractor->getTrackMetaData(mExtractor->data, format.get(), index, 0);
    const std::string mime = mimeOf(format.get());
    mMemory.allowEndlessGrowth(mime == kAc3);
    mSlots[mNextSlot].reset();
    mSlots[mNextSlot] = std::make_unique<TrackSlot>(track, mime);
    mNextSlot = (mNextSlot + 1) % kSlots;
}

void Session::playerSeek(const Call& call) {
    const uint32_t mode = call.detail() & 7U;
    int64_t timeUs = timeOf(call);
    for (const auto& slot : mSlots) {
        if (slot == nullptr || !slot->isStarted()) {
            continue;
        }
        const ReadOutcome outcome = read(*slot, SEEK | mode, timeUs);
        if (outcome.buffer != nullptr) {
            timeUs = std::max<int64_t>(outcome.timeUs, 0);
            TrackSlot::release(outcome.buffer);
        }
    }
}

void Session::drain(size_t count) {
    for (size_t round = 0; round < count; ++round) {
        bool any = false;
        for (const auto& slot : mSlots) {
            if (slot != nullptr && slot->isStarted()) {
                const ReadOutcome outcome = read(*slot, NONBLOCKING, 0);
                if (outcome.buffer != nullptr) {
                    any = true;
                    TrackSlot::release(outcome.buffer);
                }
            }
        }
        // A track that reaches the end of the file reports that once before it returns its packets.
        if (!any && round > 0) {
            return;
        }
    }
}

void Session::readRun(TrackSlot& track, size_t count, uint32_t options, int64_t seekUs) {
    for (size_t i = 0; i < count; ++i) {
        const ReadOutcome outcome = read(track, options, seekUs);
        if (outcome.buffer == nullptr) {
            return;
        }
        TrackSlot::release(outcome.buffer);
        options = 0;
    }
}

ReadOutcome Session::read(TrackSlot& track, uint32_t options, int64_t seekUs) {
    mSource.beginCall();
    const ReadOutcome outcome = track.read(options, seekUs);
    mPayloadOut += outcome.payloadSize;
    // A byte that is read again after a seek is counted again.
    require(mPayloadOut <= mSource.delivered(), "more bytes come out than went in");
    return outcome;
}

}  // namespace android::ogm::fuzz
