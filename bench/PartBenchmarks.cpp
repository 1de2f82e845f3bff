// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmBench"
#include <benchmark/benchmark.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

#include "BenchFile.h"
#include "ElementaryStreams.h"
#include "Meter.h"
#include "OgmExtractor.h"
#include "OgmFile.h"
#include "audio/AccessUnitCutter.h"

namespace android::ogm::bench {

namespace {

using benchmark::State;
using test::Bytes;

constexpr size_t kFileSize = size_t{4} << 20;
/** How many units are made before the track is emptied again. */
constexpr size_t kRound = 256;

/** A track of MPEG-4 video that gets its packets without a file. */
class FedTrack {
  public:
    FedTrack() {
        OgmStreamInfo stream;
        stream.mSerialNo = 1;
        stream.mType = OGV_VIDEO_MP4;
        stream.mTimeUnit = 400'000;
        mTrack = new OgmTrack(&mExtractor, stream, 0, false);
        mTable = wrap(mTrack);
        mTable->start(mTable->data, mGroup.wrap());
        mTrack->updateGranulePosition(0, 1, false);
    }
    ~FedTrack() {
        mTable->free(mTable->data);
        ::free(mTable);
    }
    FedTrack(const FedTrack&) = delete;
    FedTrack& operator=(const FedTrack&) = delete;

    OgmTrack* operator->() { return mTrack; }

    void append(const Bytes& packet) {
        ByteBuffer piece(ByteView(packet.data(), packet.size()));
        mTrack->appendData(&piece, true, false);
    }

  private:
    MemorySource mSource{nullptr, 0};
    OgmExtractor mExtractor{std::make_unique<DataSourceHelper>(mSource.table())};
    MediaBufferGroup mGroup;
    OgmTrack* mTrack;
    CMediaTrack* mTable;
};

/** An elementary stream with its cutter. */
class FedCutter {
  public:
    explicit FedCutter(uint32_t type) : mPackets(1, type), mCutter(makeAccessUnitCutter(type)) {}

    /** Passes bytes in the same kind of memory as a track's packets. */
    void append(const Bytes& bytes) {
        ByteBuffer piece = mPackets.makePiece(bytes.size());
        std::copy(bytes.begin(), bytes.end(), piece.data());
        appendAudioData(*mCutter, &mStream, &piece, 1);
        mPackets.giveBack(&piece);
    }

    std::optional<AccessUnit> dequeueAccessUnit() {
        return mCutter->dequeueAccessUnit(&mStream, &mPackets);
    }

  private:
    PacketQueue mPackets;
    const std::unique_ptr<AccessUnitCutter> mCutter;
    ElementaryStream mStream;
};

void readPages(State& state) {
    std::vector<uint8_t> file;
    writePages(mpeg4AndMp3(), kFileSize, [&file](const uint8_t* data, size_t size) {
        file.insert(file.end(), data, data + size);
    });
    MemorySource source(file.data(), file.size());
    const PageReader pages(std::make_unique<DataSourceHelper>(source.table()));
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        meter.start();
        uint64_t count = 0;
        OgmPage page;
        for (int64_t offset = 0; offset < static_cast<int64_t>(file.size()); ++count) {
            offset += pages.readPage(offset, &page);
        }
        meter.stop(count);
    }
    meter.report(state);
}

/** Appends frames one by one and takes out the access units. */
void cutFrames(State& state, uint32_t type, const std::vector<Bytes>& frames) {
    FedCutter cutter(type);
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        meter.start();
        uint64_t units = 0;
        for (const Bytes& frame : frames) {
            cutter.append(frame);
            while (cutter.dequeueAccessUnit()) {
                ++units;
            }
        }
        meter.stop(units);
    }
    meter.report(state, std::accumulate(frames.begin(), frames.end(), uint64_t{0},
                                        [](uint64_t sum, const Bytes& frame) {
                                            return sum + frame.size();
                                        }));
}

/** Appends pieces without a second sync word, so they are stored and searched. */
void searchFrames(State& state, uint32_t type, const Bytes& start) {
    constexpr size_t kPieceSize = 64;
    const Bytes piece = test::pattern(kPieceSize, 1);
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        FedCutter cutter(type);
        meter.start();
        cutter.append(start);
        for (int64_t i = 0; i < state.range(0); ++i) {
            cutter.append(piece);
            benchmark::DoNotOptimize(cutter.dequeueAccessUnit());
        }
        meter.stop(static_cast<uint64_t>(state.range(0)));
    }
    meter.report(state);
}

void appendPackets(State& state) {
    const Bytes packet = test::dataPacket(test::kPlainPacket, test::videoObjectPlane(1, 5000));
    FedTrack track;
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        meter.start();
        for (size_t i = 0; i < kRound; ++i) {
            track.append(packet);
        }
        meter.stop(kRound);
        track->signalDiscontinuity();
    }
    meter.report(state);
}

void dequeueFrames(State& state) {
    const Bytes packet = test::dataPacket(test::kPlainPacket, test::videoObjectPlane(1, 5000));
    FedTrack track;
    Meter meter;
    for ([[maybe_unused]] auto _ : state) {
        for (size_t i = 0; i <= kRound; ++i) {
            track.append(packet);
        }
        meter.start();
        for (size_t i = 0; i < kRound; ++i) {
            track->dequeueFrame(0)->release();
        }
        meter.stop(kRound);
        track->signalDiscontinuity();
    }
    meter.report(state);
}

template <typename Frame>
std::vector<Bytes> framesOf(const Frame& make) {
    std::vector<Bytes> frames;
    for (uint32_t seed = 0; seed < kRound; ++seed) {
        frames.push_back(make(seed));
    }
    return frames;
}

Bytes mpegAudioFrame(uint32_t seed) {
    test::MpegAudioFrame frame;
    frame.seed = seed;
    return frame.bytes();
}

Bytes ac3Frame(uint32_t seed) {
    test::Ac3Frame frame;
    frame.seed = seed;
    return frame.bytes();
}

Bytes dtsFrame(uint32_t seed) {
    return test::dtsFrame(test::DtsForm::kCore16BitBigEndian, 1006, seed);
}

void registerCutter(const char* name, uint32_t type, const std::vector<Bytes>& frames) {
    benchmark::RegisterBenchmark(name,
                                 [type, frames](State& state) { cutFrames(state, type, frames); });
}

void registerSearch(const char* name, uint32_t type, const Bytes& start) {
    benchmark::RegisterBenchmark(name,
                                 [type, start](State& state) { searchFrames(state, type, start); })
            ->Arg(1000)
            ->Arg(4000);
}

}  // namespace

void registerPartBenchmarks() {
    benchmark::RegisterBenchmark("part/page_reader", readPages);
    registerCutter("part/mpeg_audio_cutter", OGA_AUDIO_MP3, framesOf(mpegAudioFrame));
    registerCutter("part/ac3_cutter", OGA_AUDIO_AC3, framesOf(ac3Frame));
    registerCutter("part/dts_cutter", OGA_AUDIO_DTS, framesOf(dtsFrame));
    registerSearch("part/ac3_no_frame", OGA_AUDIO_AC3, ac3Frame(0));
    registerSearch("part/dts_no_frame_end", OGA_AUDIO_DTS, dtsFrame(0));
    benchmark::RegisterBenchmark("part/append_data", appendPackets);
    benchmark::RegisterBenchmark("part/dequeue_frame", dequeueFrames);
}

}  // namespace android::ogm::bench
