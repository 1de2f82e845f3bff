// SPDX-License-Identifier: Apache-2.0
#include "PlanList.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "ElementaryFile.h"
#include "FileMaker.h"
#include "Random.h"
#include "ScriptMaker.h"

namespace android::ogm::trace {

namespace {

namespace fs = std::filesystem;

/** A player's session, and one of each theme. */
constexpr size_t kSessionsOfASample = 1 + kThemes;

Bytes contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

SizeAnswer trueSize(const Bytes& file) {
    return {OK, static_cast<int64_t>(file.size())};
}

SizeAnswer oddSize(Random* random, const Bytes& file) {
    constexpr status_t kUnsupported = -1010;
    constexpr int64_t kScanned = 650520;
    const auto size = static_cast<int64_t>(file.size());
    const auto some = static_cast<int64_t>(random->below(file.size() + 1));
    switch (random->below(7)) {
        case 0:
            return {kUnsupported, std::nullopt};
        case 1:
            return {kUnsupported, -1};
        case 2:
            return {kUnsupported, size};
        case 3:
            return {OK, some};
        case 4:
            return {OK, size + some};
        case 5:
            return {OK, kScanned + some};
        default:
            return {OK, random->oneIn(2) ? 0 : -some};
    }
}

std::vector<fuzz::Fault> someFaults(Random* random) {
    std::vector<fuzz::Fault> faults;
    for (size_t i = random->between(1, 3); i > 0; --i) {
        fuzz::Fault fault;
        fault.kind = static_cast<fuzz::FaultKind>(random->below(fuzz::kFaultKinds));
        fault.firstRead = static_cast<uint16_t>(random->below(random->oneIn(3) ? 60000 : 3000));
        fault.count = static_cast<uint8_t>(random->oneIn(12) ? 0 : random->between(1, 4));
        faults.push_back(fault);
    }
    return faults;
}

Theme randomTheme(Random* random) {
    // Mixed calls and seeks find more than the rest.
    if (random->oneIn(3)) {
        return random->oneIn(2) ? Theme::kMixed : Theme::kSeeks;
    }
    return static_cast<Theme>(random->below(kThemes));
}

/** Returns the beginning of a sample, which may be all of it. */
Bytes beginningOf(Random* random, const Bytes& sample) {
    constexpr size_t kShort = 200000;
    return random->oneIn(6) ? sample : test::head(sample, random->between(40000, kShort));
}

void addFaults(Random* random, Plan* plan) {
    plan->size = random->oneIn(12) ? oddSize(random, plan->file) : trueSize(plan->file);
    if (random->oneIn(5)) {
        plan->faults = someFaults(random);
    }
    if (random->oneIn(8)) {
        plan->groupFault = {random->below(60), random->between(1, 3)};
    }
    plan->dumpAudio = random->oneIn(20);
    plan->dumpCanBeOpened = !random->oneIn(4);
}

}  // namespace

PlanList::PlanList(const Settings& settings)
    : mSettings(settings), mSamples(filesOf(settings.samples)) {
    for (const std::string& folder : settings.corpora) {
        for (File& file : filesOf(folder)) {
            mCorpus.push_back(std::move(file));
        }
    }
}

std::vector<PlanList::File> PlanList::filesOf(const fs::path& folder) {
    std::vector<File> files;
    if (folder.empty()) {
        return files;
    }
    for (const auto& entry : fs::directory_iterator(folder)) {
        files.push_back({entry.path().filename(), contentOf(entry.path())});
    }
    std::sort(files.begin(), files.end(),
              [](const File& one, const File& other) { return one.name < other.name; });
    return files;
}

size_t PlanList::size() const {
    return mSamples.size() * kSessionsOfASample + mCorpus.size() + mSettings.generated;
}

Plan PlanList::plan(size_t index) const {
    const size_t sampleSessions = mSamples.size() * kSessionsOfASample;
    if (index < sampleSessions) {
        return samplePlan(index);
    }
    if (index < sampleSessions + mCorpus.size()) {
        return corpusPlan(index - sampleSessions);
    }
    return generatedPlan(index - sampleSessions - mCorpus.size());
}

Plan PlanList::samplePlan(size_t index) const {
    const File& sample = mSamples[index / kSessionsOfASample];
    const size_t variant = index % kSessionsOfASample;
    Plan plan;
    plan.file = sample.bytes;
    plan.size = trueSize(plan.file);
    if (variant == 0) {
        plan.name = sample.name + ", played";
        plan.steps = playerScript();
        return plan;
    }
    const auto theme = static_cast<Theme>(variant - 1);
    Random random(mSettings.seed + index);
    plan.name = sample.name + ", " + std::string(nameOf(theme));
    plan.steps = randomScript(&random, theme);
    return plan;
}

Plan PlanList::corpusPlan(size_t index) const {
    const File& input = mCorpus[index];
    const fuzz::SessionInput session(input.bytes.data(), input.bytes.size());
    Plan plan;
    plan.name = "fuzz input " + input.name;
    plan.file = session.elementary ? fuzz::elementaryFile(session.file) : session.file;
    plan.size.stored = session.reportedSize(plan.file.size());
    if (session.sizeKind == fuzz::ReportedSize::kUnknown) {
        plan.size.status = -1010;
    }
    plan.faults = session.faults;
    plan.steps = scriptOf(session);
    return plan;
}

Plan PlanList::generatedPlan(size_t index) const {
    constexpr uint64_t kSpread = 0x9E3779B97F4A7C15U;
    Random random((mSettings.seed + 1) * kSpread + index);
    Theme theme = randomTheme(&random);
    Plan plan;
    const size_t kind = random.below(100);
    if (kind < 25 && !mSamples.empty()) {
        const File& sample = mSamples[random.below(mSamples.size())];
        plan.name = "beginning of " + sample.name;
        plan.file = beginningOf(&random, sample.bytes);
    } else if (kind < 30) {
        plan.name = "file with a known duration";
        plan.file = randomFile(&random, FileSize::kScanned);
    } else if (kind < 33) {
        plan.name = "file with a long queue";
        plan.file = randomFile(&random, FileSize::kLongQueue);
        theme = Theme::kWaitingTrack;
    } else {
        plan.name = "small file";
        plan.file = randomFile(&random, FileSize::kSmall);
    }
    if (random.oneIn(3)) {
        plan.name += ", damaged";
        plan.file = damagedFile(&random, std::move(plan.file));
    }
    plan.name += ", " + std::string(nameOf(theme));
    addFaults(&random, &plan);
    plan.steps = randomScript(&random, theme);
    return plan;
}

}  // namespace android::ogm::trace
