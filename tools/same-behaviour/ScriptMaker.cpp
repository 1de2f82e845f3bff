// SPDX-License-Identifier: Apache-2.0
#include "ScriptMaker.h"

#include <media/MediaExtractorPluginApi.h>

#include <algorithm>
#include <limits>

namespace android::ogm::trace {

namespace {

constexpr std::string_view kThemeNames[] = {
        "mixed calls",     "seeks",         "stops",        "freed after a restart",
        "extractor first", "waiting track", "held buffers", "formats"};

constexpr size_t kUsedSlots = 4;
constexpr size_t kEndless = 100000;

/** Kinds of seek times, as in the upper two bits for fuzz::seekTimeUs; most are within short files.
 */
uint16_t randomTime(Random* random) {
    constexpr size_t kMilliseconds = size_t{1} << 14;
    constexpr size_t kAroundTheEnd = size_t{2} << 14;
    constexpr size_t kOdd = size_t{3} << 14;
    constexpr size_t kMiddle = size_t{1} << 13;
    constexpr size_t kTenthsOfAMinute = 600;
    constexpr size_t kTenthsOfASecond = 80;
    switch (random->below(9)) {
        case 0:
            return static_cast<uint16_t>(kOdd + random->below(8));
        case 1:
            return static_cast<uint16_t>(kAroundTheEnd + kMiddle - 3000 + random->below(6000));
        case 2:
        case 3:
            return static_cast<uint16_t>(kMilliseconds + random->below(8000));
        case 4:
            return static_cast<uint16_t>(random->below(random->oneIn(3) ? 1U << 14 : 1000));
        case 5:
            return static_cast<uint16_t>(random->below(kTenthsOfAMinute));
        default:
            return static_cast<uint16_t>(random->below(kTenthsOfASecond));
    }
}

uint32_t randomSeek(Random* random) {
    return SEEK | static_cast<uint32_t>(random->below(8)) |
           (random->oneIn(8) ? uint32_t{NONBLOCKING} : 0);
}

size_t randomSlot(Random* random) {
    return kAnySlot + random->below(kUsedSlots);
}

size_t randomIndex(Random* random) {
    constexpr size_t kBad[] = {7, 0x7FFFFFFF, 0x80000000, std::numeric_limits<size_t>::max()};
    return random->oneIn(20) ? random->oneOf(kBad) : random->below(4);
}

struct Weight {
    Action action;
    size_t weight;
};

constexpr Weight kMixed[] = {
        {Action::kRead, 40},         {Action::kReadAndKeep, 6}, {Action::kReleaseKept, 4},
        {Action::kPlayerSeek, 6},    {Action::kDrain, 10},      {Action::kStart, 4},
        {Action::kStop, 3},          {Action::kGetFormat, 3},   {Action::kNonBlocking, 1},
        {Action::kTrackFormat, 3},   {Action::kGetTrack, 3},    {Action::kFreeTrack, 2},
        {Action::kFileFormat, 2},    {Action::kCountTracks, 1}, {Action::kFlags, 1},
        {Action::kNullGetFormat, 1}, {Action::kSniff, 1}};
constexpr Weight kSeeks[] = {{Action::kRead, 30}, {Action::kPlayerSeek, 20}, {Action::kDrain, 3}};
constexpr Weight kStops[] = {
        {Action::kRead, 20}, {Action::kPlayerSeek, 4}, {Action::kDrain, 4},    {Action::kStart, 10},
        {Action::kStop, 10}, {Action::kGetTrack, 4},   {Action::kFreeTrack, 4}};
constexpr Weight kHeld[] = {{Action::kReadAndKeep, 40}, {Action::kReleaseKept, 2},
                            {Action::kRead, 10},        {Action::kPlayerSeek, 3},
                            {Action::kStop, 2},         {Action::kStart, 2}};
constexpr Weight kFormats[] = {
        {Action::kTrackFormat, 6}, {Action::kNullTrackFormat, 2}, {Action::kFileFormat, 3},
        {Action::kCountTracks, 1}, {Action::kFlags, 1},           {Action::kName, 1},
        {Action::kMediaCas, 1},    {Action::kGetFormat, 4},       {Action::kNullGetFormat, 1},
        {Action::kGetTrack, 2},    {Action::kSniff, 1},           {Action::kOpen, 1}};

/** Writes the steps of one session. */
class Writer {
  public:
    explicit Writer(Random* random) : mRandom(random) {}

    void add(Action action, size_t slot = 0, size_t number = 0, uint32_t options = 0,
             uint16_t time = 0) {
        mSteps.push_back({action, slot, number, options, time});
    }

    void open() {
        if (!mRandom->oneIn(4)) {
            add(Action::kSniff);
        }
        add(Action::kOpen);
        if (!mRandom->oneIn(4)) {
            add(Action::kFileFormat);
            add(Action::kCountTracks);
        }
    }

    void getTracks() {
        const size_t count = mRandom->oneIn(5) ? mRandom->between(1, kUsedSlots) : kUsedSlots;
        const bool inOrder = !mRandom->oneIn(6);
        for (size_t i = 0; i < count; ++i) {
            add(Action::kGetTrack, 0, inOrder ? i : randomIndex(mRandom));
        }
        if (!inOrder) {
            add(Action::kGetTrack, 0, 0);
        }
    }

    void startTracks(size_t share) {
        for (size_t slot = 0; slot < kUsedSlots; ++slot) {
            if (mRandom->percent(share)) {
                add(Action::kStart, slot);
            }
        }
    }

    template <size_t count>
    void addAny(const Weight (&weights)[count], size_t steps) {
        for (size_t i = 0; i < steps; ++i) {
            addOne(anyOf(weights));
        }
    }

    void stopAll(bool backwards) {
        for (size_t i = 0; i < kAnySlot; ++i) {
            add(Action::kStop, backwards ? kAnySlot - 1 - i : i);
        }
    }

    void freeAllAnyhow() {
        size_t order[kAnySlot];
        for (size_t i = 0; i < kAnySlot; ++i) {
            order[i] = i;
            std::swap(order[i], order[mRandom->below(i + 1)]);
        }
        for (const size_t slot : order) {
            add(Action::kFreeTrack, slot);
        }
    }

    std::vector<Step> take() { return std::move(mSteps); }

  private:
    template <size_t count>
    Action anyOf(const Weight (&weights)[count]) {
        size_t all = 0;
        for (const Weight& weight : weights) {
            all += weight.weight;
        }
        size_t chosen = mRandom->below(all);
        const Weight* weight = weights;
        while (chosen >= weight->weight) {
            chosen -= weight->weight;
            ++weight;
        }
        return weight->action;
    }

    void addOne(Action action) {
        const size_t slot = randomSlot(mRandom);
        switch (action) {
            case Action::kRead:
                addRead(slot);
                break;
            case Action::kReadAndKeep:
                add(action, slot, 0, mRandom->oneIn(12) ? randomSeek(mRandom) : 0,
                    randomTime(mRandom));
                break;
            case Action::kPlayerSeek:
                add(action, 0, 0, static_cast<uint32_t>(mRandom->below(5)), randomTime(mRandom));
                break;
            case Action::kDrain:
                add(action, 0, mRandom->oneIn(6) ? kEndless : mRandom->between(1, 40));
                break;
            case Action::kGetTrack:
                add(action, 0, randomIndex(mRandom));
                break;
            case Action::kTrackFormat:
            case Action::kNullTrackFormat:
                add(action, 0, randomIndex(mRandom), static_cast<uint32_t>(mRandom->below(4)));
                break;
            default:
                add(action, slot);
                break;
        }
    }

    void addRead(size_t slot) {
        const uint32_t options = mRandom->oneIn(4) ? randomSeek(mRandom)
                                 : mRandom->oneIn(6)
                                         ? static_cast<uint32_t>(mRandom->bits()) & ~uint32_t{SEEK}
                                         : 0;
        add(Action::kRead, slot, mRandom->oneIn(8) ? kEndless : mRandom->between(1, 30), options,
            randomTime(mRandom));
    }

    Random* const mRandom;
    std::vector<Step> mSteps;
};

void addRestarts(Random* random, Writer* writer) {
    for (size_t i = random->between(1, 4); i > 0; --i) {
        const size_t slot = randomSlot(random);
        writer->add(Action::kStop, slot);
        writer->add(Action::kStart, slot);
        if (random->oneIn(2)) {
            writer->add(Action::kRead, slot, random->between(1, 20));
        }
        writer->add(Action::kFreeTrack, slot);
        writer->addAny(kSeeks, random->between(1, 5));
        if (random->oneIn(3)) {
            writer->add(Action::kGetTrack, 0, randomIndex(random));
        }
    }
    writer->addAny(kMixed, random->between(2, 10));
}

void addWaitingTrack(Random* random, Writer* writer) {
    writer->add(Action::kRead, randomSlot(random), kEndless);
    writer->addAny(kSeeks, random->between(1, 4));
    for (size_t slot = 0; slot < kUsedSlots; ++slot) {
        writer->add(Action::kRead, kAnySlot + slot,
                    random->oneIn(2) ? kEndless : random->below(300));
    }
    writer->addAny(kSeeks, random->between(1, 4));
}

void addBody(Random* random, Theme theme, Writer* writer) {
    const size_t steps = random->between(5, 50);
    switch (theme) {
        case Theme::kMixed:
            writer->addAny(kMixed, steps);
            break;
        case Theme::kSeeks:
            writer->addAny(kSeeks, steps);
            break;
        case Theme::kStops:
            writer->addAny(kStops, steps);
            break;
        case Theme::kFreedAfterRestart:
            addRestarts(random, writer);
            break;
        case Theme::kExtractorFirst:
            writer->addAny(kSeeks, steps / 3);
            writer->stopAll(random->oneIn(2));
            writer->add(Action::kFreeExtractor);
            break;
        case Theme::kWaitingTrack:
            addWaitingTrack(random, writer);
            break;
        case Theme::kHeldBuffers:
            writer->addAny(kHeld, 4 * steps);
            break;
        case Theme::kFormats:
            writer->addAny(kFormats, steps);
            // This is likely to be the last call.
            if (random->oneIn(6)) {
                writer->add(Action::kNullFileFormat);
            }
            break;
    }
}

}  // namespace

std::string_view nameOf(Theme theme) {
    return kThemeNames[static_cast<size_t>(theme)];
}

std::vector<Step> randomScript(Random* random, Theme theme) {
    Writer writer(random);
    if (random->oneIn(40)) {
        writer.add(Action::kSniff);
        return writer.take();
    }
    writer.open();
    writer.getTracks();
    constexpr size_t kMost = 85;
    writer.startTracks(random->oneIn(2) ? 100 : kMost);
    addBody(random, theme, &writer);
    writer.freeAllAnyhow();
    return writer.take();
}

std::vector<Step> playerScript() {
    constexpr uint16_t kSeekTime = 45;
    Random random(0);
    Writer writer(&random);
    writer.add(Action::kSniff);
    writer.add(Action::kOpen);
    writer.add(Action::kFileFormat);
    for (size_t i = 0; i < kUsedSlots; ++i) {
        writer.add(Action::kTrackFormat, 0, i);
        writer.add(Action::kGetTrack, 0, i);
        writer.add(Action::kStart, i);
        writer.add(Action::kGetFormat, i);
    }
    writer.add(Action::kDrain, 0, kEndless);
    writer.add(Action::kPlayerSeek, 0, 0, 0, kSeekTime);
    writer.add(Action::kDrain, 0, kEndless);
    writer.add(Action::kStop, 0);
    writer.add(Action::kStop, 1);
    return writer.take();
}

}  // namespace android::ogm::trace
