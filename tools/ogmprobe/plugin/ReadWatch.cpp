// SPDX-License-Identifier: Apache-2.0
#include "plugin/ReadWatch.h"

#include <chrono>

#include "plugin/CycleFinder.h"
#include "records/Trace.h"

namespace ogmprobe {
namespace {

using Clock = std::chrono::steady_clock;

CycleFinder gFinder;
ReadWatch::CycleHandler gHandler = nullptr;
std::chrono::duration<double> gLimit{};
Clock::time_point gCallBegan;

// No search that ends repeats its reads this often without a difference.
constexpr uint64_t kProof = 256;

// FNV-1a on whole numbers: different runs rarely have the same fingerprint.
uint64_t fingerprint(const SourceRead& run) {
    constexpr uint64_t kPrime = 0x100000001b3;
    uint64_t value = 0xcbf29ce484222325;
    for (const uint64_t part : {static_cast<uint64_t>(run.offset), run.size,
                                static_cast<uint64_t>(run.result), run.count}) {
        value = (value ^ part) * kPrime;
        value ^= value >> 29;
    }
    return value;
}

}  // namespace

void ReadWatch::endRun() {
    Vitals& vitals = PluginCall::vitals();
    const SourceRead run = vitals.run();
    if (run.count != 0) {
        vitals.runNext.set(Vitals::kNoRun);
        Trace::add<SourceRead>(run);
        if (gHandler != nullptr) {
            gFinder.add(fingerprint(run));
        }
    }
}

void ReadWatch::beginCall() {
    gFinder.clear();
    gCallBegan = Clock::now();
}

void ReadWatch::onCycle(CycleHandler handler, double limitSeconds) {
    gHandler = limitSeconds > 0 ? handler : nullptr;
    gLimit = std::chrono::duration<double>(limitSeconds);
}

void ReadWatch::add(int64_t offset, uint64_t size, int64_t result) noexcept {
    const Vitals& vitals = PluginCall::vitals();
    // Reads that do not overlap are not a search: packets of one byte each are read this way too.
    const bool isAlike =
            size > 1 && size == vitals.runSize.get() && result == vitals.runResult.get();
    if (isAlike && continues(offset) && offset != Vitals::kNoRun) {
        goOn(offset);
    } else {
        beginRun({offset, size, result, 1});
    }
}

void ReadWatch::beginRun(const SourceRead& read) noexcept {
    Vitals& vitals = PluginCall::vitals();
    endRun();
    vitals.signsOfLife.set(vitals.signsOfLife.get() + 1);
    vitals.runOffset.set(read.offset);
    vitals.runSize.set(read.size);
    vitals.runResult.set(read.result);
    vitals.runNext.set(static_cast<int64_t>(static_cast<uint64_t>(read.offset) + 1));
    if (gHandler != nullptr) {
        judge();
    }
}

void ReadWatch::judge() noexcept {
    const uint64_t rounds = gFinder.rounds();
    // Reading the clock for each read would be slow.
    if (rounds < kProof || rounds % 64 != 0) {
        return;
    }
    if (Clock::now() - gCallBegan > gLimit) {
        gHandler({gFinder.period(), PluginCall::vitals().runOffset.get(), rounds});
    }
}

}  // namespace ogmprobe
