// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "BenchFile.h"
#include "Meter.h"
#include "PeakMemory.h"
#include "Player.h"
#include "RepeatedSource.h"

namespace android::ogm::bench {

namespace {

using benchmark::State;

constexpr double kNsPerUs = 1e3;
constexpr size_t kReadsPerSeek = 5;
constexpr size_t kSeeks = 200;
/** Size of the repeated part of a file that is generated while it is read. */
constexpr size_t kPeriodSize = size_t{8} << 20;

/** The file of one content. Made at its first use, deleted when another one is used. */
class CurrentFile {
  public:
    explicit CurrentFile(size_t size) : mSize(size) {}

    const BenchFile& get(Content (*content)()) {
        if (mContent != content) {
            mFile.reset();
            mFile = std::make_unique<BenchFile>(content(), mSize);
            mContent = content;
        }
        return *mFile;
    }

  private:
    size_t mSize;
    Content (*mContent)() = nullptr;
    std::unique_ptr<BenchFile> mFile;
};

void sequentialRead(State& state, const BenchFile& file) {
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        MemorySource source(file.mapped());
        meter.start();
        readSequentially(source);
        meter.stop(source.reads());
    }
    meter.report(state, file.mapped().size());
}

void payloadCopy(State& state, const BenchFile& file) {
    const std::vector<PayloadPlace> places = payloadPlaces(file.mapped());
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        meter.start();
        copyPayload(file.mapped(), places);
        meter.stop(places.size());
    }
    meter.report(state, file.mapped().size());
}

void liboggWalk(State& state, const BenchFile& file) {
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        meter.start();
        const WalkResult result = walkWithLibogg(file.mapped());
        meter.stop(result.packets);
    }
    meter.report(state, file.mapped().size());
}

/** Opens the file again in each round and measures what `read` does with it. */
void readAll(State& state, const BenchFile& file, const std::function<void(Player&)>& read) {
    Meter meter;
    uint64_t reads = 0;
    for ([[maybe_unused]] auto _ : state) {
        MemorySource source(file.mapped());
        Player player(source);
        player.startTracks();
        const uint64_t readsBefore = source.reads();
        meter.start();
        read(player);
        meter.stop(player.buffers());
        reads += source.reads() - readsBefore;
    }
    meter.report(state, file.mapped().size());
    state.counters[kReadsPerPage] = static_cast<double>(reads) /
                                    static_cast<double>(state.iterations()) /
                                    static_cast<double>(file.contents().pages);
}

void timeOrder(State& state, const BenchFile& file) {
    readAll(state, file, &Player::readInTimeOrder);
}

void ignoreMessage(const __android_log_message* /* message */) {}

void timeOrderWithLog(State& state, const BenchFile& file) {
    __android_log_set_logger(ignoreMessage);
    const int32_t quiet = __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    timeOrder(state, file);
    __android_log_set_minimum_priority(quiet);
}

/** Reads one whole track, then the other. */
template <size_t first, size_t second>
void trackByTrack(State& state, const BenchFile& file) {
    readAll(state, file, [](Player& player) {
        player.readTrackToEnd(first);
        player.readTrackToEnd(second);
    });
}

double percentile(std::vector<double>& values, size_t percent) {
    const size_t place = std::min(values.size() - 1, values.size() * percent / 100);
    std::nth_element(values.begin(), values.begin() + static_cast<ptrdiff_t>(place), values.end());
    return values[place];
}

void reportTimes(State& state, std::vector<double>& us) {
    state.counters[kMedianUs] = percentile(us, 50);
    state.counters[kNinetyFifthUs] = percentile(us, 95);
}

/** Sniffs, opens and frees. */
void opening(State& state, const BenchFile& file) {
    std::vector<double> us;
    for ([[maybe_unused]] auto _ : state) {
        const int64_t start = threadTimeNs();
        {
            MemorySource source(file.mapped());
            const Player player(source);
        }
        us.push_back(static_cast<double>(threadTimeNs() - start) / kNsPerUs);
    }
    reportTimes(state, us);
}

/** Seeks in the video track, spread over the file by a fixed rule, with the reads that follow. */
void seeking(State& state, const BenchFile& file) {
    MemorySource source(file.mapped());
    Player player(source);
    player.startTracks();
    const int64_t durationUs = player.durationUs();
    std::vector<double> us;
    uint64_t number = 0;
    for ([[maybe_unused]] auto _ : state) {
        constexpr uint64_t kStride = 61;  // shares no divisor with the number of places
        const auto place = static_cast<int64_t>(number++ * kStride % kSeeks);
        const int64_t start = threadTimeNs();
        player.seekAndRead(0, durationUs * place / int64_t{kSeeks});
        for (size_t i = 1; i < kReadsPerSeek; ++i) {
            player.read(0);
        }
        us.push_back(static_cast<double>(threadTimeNs() - start) / kNsPerUs);
    }
    reportTimes(state, us);
}

void peakMemory(State& state, const BenchFile& file) {
    int64_t bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        bytes = peakMemoryOfReading(file.path());
    }
    state.counters[kPeakKiB] = static_cast<double>(bytes) / 1024;
}

/**
 * Measures the cost of a buffer in files of different lengths, which are generated while they are
 * read. They take turns, and in its turn a short file is read several times, up to the size of the
 * longest. So other work of the machine disturbs all of them equally.
 */
class Lengths {
  public:
    explicit Lengths(const std::vector<int64_t>& sizes)
        : mRoundSize(*std::max_element(sizes.begin(), sizes.end())) {
        for (const int64_t size : sizes) {
            mResults.emplace(size, Meter());
        }
    }

    /** Measures all of them when the first result is asked for. */
    void report(State& state, int64_t size) {
        if (!mIsMeasured) {
            measure();
        }
        for ([[maybe_unused]] auto _ : state) {
        }
        mResults.at(size).report(state, static_cast<uint64_t>(filesInRound(size) * size));
    }

  private:
    static constexpr int kTurns = 7;

    int64_t filesInRound(int64_t size) const { return (mRoundSize + size - 1) / size; }

    void measure() {
        for (int turn = 0; turn < kTurns; ++turn) {
            for (auto& [size, meter] : mResults) {
                readRound(size, meter);
            }
        }
        mIsMeasured = true;
    }

    void readRound(int64_t size, Meter& meter) {
        // A long file has its repeated part in the processor's cache, so a short one must have it
        // there too.
        RepeatedSource source(mContent, static_cast<size_t>(std::min<int64_t>(kPeriodSize, size)),
                              size);
        for (int64_t i = 0; i < filesInRound(size); ++i) {
            Player player(source);
            player.startTracks();
            meter.start();
            player.readInTimeOrder();
            meter.pause(player.buffers());
        }
        meter.endRound();
    }

    const Content mContent = mpeg4AndMp3();
    int64_t mRoundSize;
    bool mIsMeasured = false;
    std::map<int64_t, Meter> mResults;
};

struct FileBenchmark {
    const char* name;
    void (*run)(State& state, const BenchFile& file);
};

constexpr FileBenchmark kBenchmarks[] = {
        {"sequential_read", sequentialRead},
        {"payload_copy", payloadCopy},
        {"libogg_walk", liboggWalk},
        {"time_order", timeOrder},
        {"time_order_null_logger", timeOrderWithLog},
        {"track_0_then_1", trackByTrack<0, 1>},
        {"track_1_then_0", trackByTrack<1, 0>},
        {"opening", opening},
        {"seek_and_5_reads", seeking},
        {"peak_memory", peakMemory},
};

}  // namespace

void registerFileBenchmarks(const BenchSizes& sizes) {
    const auto current = std::make_shared<CurrentFile>(sizes.file);
    for (Content (*const content)() : {mpeg4AndMp3, mpeg4AndAc3, h264AndPcm}) {
        for (const FileBenchmark& row : kBenchmarks) {
            auto* const registered =
                    benchmark::RegisterBenchmark((content().name + "/" + row.name).c_str(),
                                                 [current, content, run = row.run](State& state) {
                                                     run(state, current->get(content));
                                                 });
            registered->Unit(benchmark::kMicrosecond);
            if (row.run == seeking) {
                registered->Iterations(kSeeks);
            } else if (row.run == peakMemory) {
                registered->Iterations(1);
            }
        }
    }
    const std::vector<int64_t> lengths = {sizes.shortFile, sizes.longFile};
    const auto results = std::make_shared<Lengths>(lengths);
    for (const int64_t size : lengths) {
        benchmark::RegisterBenchmark(
                ("length/" + std::to_string(size >> 20) + "_MiB").c_str(),
                [results, size](State& state) { results->report(state, size); })
                ->Iterations(1);
    }
}

}  // namespace android::ogm::bench
