// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include "AllocationHooks.h"
#include "ElementaryStreams.h"
#include "OgmFile.h"
#include "Plugin.h"
#include "Samples.h"
#include "SilentLog.h"

namespace android {
extern "C" ExtractorDef GETEXTRACTORDEF();
}

namespace android::ogm::test {
namespace {

constexpr size_t kMegabyte = 1 << 20;

/** The unit in which packet buffers grow; larger than the body of any page. */
constexpr size_t kBufferStep = 65536;
/** 8-bit samples are widened into a buffer that is half as large again as needed. */
constexpr size_t kLargestPerByte = 3;

/** Opens a file with the plug-in that is linked into this program, whose heap is counted. */
Extractor openHere(CDataSource* source) {
    static const CreatorFunc creator = [] {
        MemorySource accepted(oneVideoOneAudioFile({}).bytes());
        float confidence = 0;
        return GETEXTRACTORDEF().u.v3.sniff(accepted.table(), &confidence, nullptr, nullptr);
    }();
    return Extractor(creator(source, nullptr));
}

/**
 * A file of any length, generated while it is read: MPEG-4 video, AC-3 and PCM, with a page of each
 * every 32 ms.
 */
class LongFile {
  public:
    explicit LongFile(size_t size) : mTable{} {
        OgmFile file;
        VideoHeader video;
        video.subtype = "FMP4";
        video.timeUnit = 320000;
        file.addHeader(kVideo, video);
        AudioHeader ac3;
        ac3.subtype = "2000";
        ac3.samplesPerUnit = 48000;
        file.addHeader(kAc3, ac3);
        file.addHeader(kPcm, AudioHeader());
        mHeaders = file.bytes();
        mPeriod = period(1);
        mPeriods = (size - mHeaders.size()) / mPeriod.size();
        mTable.handle = this;
        mTable.readAt = [](void* handle, off64_t offset, void* data, size_t count) {
            const UncountedAllocations own;
            return static_cast<LongFile*>(handle)->readAt(offset, static_cast<uint8_t*>(data),
                                                          count);
        };
        mTable.getSize = [](void* handle, off64_t* total) -> status_t {
            *total = static_cast<const LongFile*>(handle)->size();
            return OK;
        };
        mTable.flags = [](void*) -> uint32_t { return 0; };
        mTable.getUri = [](void*, char*, size_t) { return false; };
    }
    LongFile(const LongFile&) = delete;
    LongFile& operator=(const LongFile&) = delete;

    CDataSource* table() { return &mTable; }
    int64_t size() const {
        return static_cast<int64_t>(mHeaders.size() + mPeriods * mPeriod.size());
    }
    size_t periods() const { return mPeriods; }

  private:
    static constexpr uint32_t kVideo = 1;
    static constexpr uint32_t kAc3 = 2;
    static constexpr uint32_t kPcm = 3;

    static Bytes page(uint32_t serialNo, uint64_t granule, const Bytes& packet) {
        return OggPage(serialNo).granule(granule).checksum(0).packet(packet).bytes();
    }

    /** The pages of one period; all periods have the same size. */
    static Bytes period(uint64_t number) {
        const bool isSync = number % 50 == 0;
        const Bytes picture = videoObjectPlane(isSync ? 0 : 1, 6000, 0);
        return joined({page(kVideo, number, dataPacket(isSync ? kSyncPacket : 0, picture)),
                       page(kAc3, number * 1536, audioPacket(Ac3Frame{}.bytes())),
                       page(kPcm, number * 256, audioPacket(filled(512, 1)))});
    }

    ssize_t readAt(int64_t offset, uint8_t* data, size_t count) {
        if (offset < 0 || offset >= size()) {
            return 0;
        }
        size_t done = 0;
        while (done < count && offset + static_cast<int64_t>(done) < size()) {
            const std::string_view piece = pieceAt(static_cast<size_t>(offset) + done);
            done += piece.copy(reinterpret_cast<char*>(data) + done, count - done);
        }
        return static_cast<ssize_t>(done);
    }

    static std::string_view tailOf(const Bytes& bytes, size_t from) {
        return std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size())
                .substr(from);
    }

    /** The bytes at `offset`, up to the end of the headers or of the period. */
    std::string_view pieceAt(size_t offset) {
        if (offset < mHeaders.size()) {
            return tailOf(mHeaders, offset);
        }
        const size_t number = (offset - mHeaders.size()) / mPeriod.size();
        if (number != mNumber) {
            mNumber = number;
            mPeriod = period(number + 1);
        }
        return tailOf(mPeriod, (offset - mHeaders.size()) % mPeriod.size());
    }

    CDataSource mTable;
    Bytes mHeaders;
    Bytes mPeriod;
    size_t mNumber = 0;
    size_t mPeriods;
};

struct Reading {
    std::array<size_t, 3> buffers{};
    ptrdiff_t peak = 0;
};

/** Reads the three tracks in the order of their times: alternately. */
Reading readInTimeOrder(LongFile& file) {
    Reading reading;
    const CountedAllocations counted;
    {
        const Extractor extractor = openHere(file.table());
        std::array<std::unique_ptr<Track>, 3> tracks;
        for (size_t i = 0; i < tracks.size(); ++i) {
            tracks[i] = extractor.startedTrack(i);
        }
        bool any = true;
        while (any) {
            any = false;
            for (size_t i = 0; i < tracks.size(); ++i) {
                const bool hasBuffer = tracks[i]->read().hasBuffer;
                reading.buffers[i] += hasBuffer ? 1 : 0;
                any = any || hasBuffer;
            }
        }
    }
    reading.peak = allocationCounts().peak;
    return reading;
}

TEST(MemoryTest, ATimeOrderedReadTakesNoMoreMemoryForALongerFile) {
    const SilentLog silent;
    LongFile warmUp(kMegabyte);
    readInTimeOrder(warmUp);
    LongFile shorter(8 * kMegabyte);
    LongFile longer(32 * kMegabyte);
    const Reading one = readInTimeOrder(shorter);
    const Reading other = readInTimeOrder(longer);
    for (size_t i = 0; i < one.buffers.size(); ++i) {
        EXPECT_GT(one.buffers[i], shorter.periods() - 5) << "not all of track " << i;
        EXPECT_GT(other.buffers[i], longer.periods() - 5) << "not all of track " << i;
    }
    EXPECT_GT(one.peak, static_cast<ptrdiff_t>(kBufferStep)) << "nothing was counted";
    EXPECT_LE(other.peak, one.peak + static_cast<ptrdiff_t>(kBufferStep));
}

TEST(MemoryTest, AWaitingTrackWhoseFramesLieAcrossPacketsTakesLittleMoreThanItsBytes) {
    const SilentLog silent;
    Bytes stream;
    for (uint32_t i = 0; i < 4000; ++i) {
        MpegAudioFrame frame;
        frame.seed = i;
        append(stream, frame.bytes());
    }
    MemorySource source(videoAndMp3File(stream, 1000).bytes());
    const CountedAllocations counted;
    const Extractor extractor = openHere(source.table());
    const auto video = extractor.startedTrack(0);
    const auto audio = extractor.startedTrack(1);
    while (video->read().hasBuffer) {
    }
    EXPECT_GT(allocationCounts().live, static_cast<ptrdiff_t>(stream.size())) << "not all waits";
    EXPECT_LT(allocationCounts().peak, static_cast<ptrdiff_t>(stream.size() * 3 / 2));
}

/** Opens a file and reads all of it, with a few seeks; returns the largest request to the heap. */
size_t largestRequest(const Bytes& bytes) {
    const SilentLog silent;
    MemorySource warmUp{Bytes{}};
    openHere(warmUp.table());
    MemorySource source(bytes);
    const CountedAllocations counted;
    const Extractor extractor = openHere(source.table());
    std::vector<std::unique_ptr<Track>> tracks;
    for (size_t i = 0; i < extractor.countTracks(); ++i) {
        tracks.push_back(extractor.startedTrack(i));
    }
    for (const int64_t timeUs : {0, 4000000, 1000000}) {
        for (const auto& track : tracks) {
            track->readAt(timeUs);
            track->drain();
        }
    }
    return allocationCounts().largest;
}

/** The largest request that a page's body, a buffer's rounding and a file of this size justify. */
size_t justified(size_t fileSize) {
    return 2 * kBufferStep + kLargestPerByte * fileSize;
}

TEST(MemoryTest, NoSampleLeadsToARequestThatItsBytesDoNotJustify) {
    for (const char* name : kShortSamples) {
        const Bytes bytes = sampleBytes(name);
        const size_t largest = largestRequest(bytes);
        EXPECT_GT(largest, 0U) << name;
        EXPECT_LE(largest, 2 * kBufferStep) << name;
    }
}

VideoHeader hostileVideo() {
    VideoHeader header;
    header.subtype = "FMP4";
    header.headerSize = 0x7FFFFFFF;
    header.defaultLength = 0x7FFFFFFF;
    header.bufferSize = 0x7FFFFFFF;
    header.width = 0x7FFFFFFF;
    header.height = 0x7FFFFFFF;
    return header;
}

AudioHeader hostileAudio(const char* tag, uint16_t bitsPerSample) {
    AudioHeader header;
    header.subtype = tag;
    header.headerSize = 0xFFFFFFFF;
    header.defaultLength = 0xFFFFFFFF;
    header.bufferSize = 0xFFFFFFFF;
    header.samplesPerUnit = ~uint64_t{0};
    header.bitsPerSample = bitsPerSample;
    header.channels = 0xFFFF;
    header.blockAlign = 0xFFFF;
    header.averageBytesPerSecond = 0xFFFFFFFF;
    return header;
}

TEST(MemoryTest, NoFieldOfAStreamHeaderLeadsToALargeRequest) {
    for (const char* tag : {"0001", "0055", "2000", "2001"}) {
        for (const uint16_t bits : {8, 16, 24}) {
            OgmFile file;
            file.addHeader(1, hostileVideo());
            file.addHeader(2, hostileAudio(tag, bits));
            for (uint64_t i = 1; i < 20; ++i) {
                file.addData(1, i, dataPacket(kSyncPacket, videoObjectPlane(0)));
                file.addData(2, i, audioPacket(filled(40, 0x0B)));
            }
            EXPECT_LE(largestRequest(file.bytes()), justified(file.size())) << tag << ' ' << bits;
        }
    }
}

TEST(MemoryTest, PagesThatAreCutOffLeadToNoRequestBeyondTheirBodies) {
    const Bytes whole = OggPage(1).granule(5).openPacket(filled(kFullPageBody, 1)).bytes();
    for (const size_t kept : {size_t{27}, size_t{100}, size_t{282}, size_t{400}}) {
        OgmFile file;
        file.addHeader(1, hostileVideo());
        file.add(OggPage(2).beginOfStream().packet(filled(60000, 1)));
        file.addData(1, 1, dataPacket(kSyncPacket, videoObjectPlane(0)));
        file.addData(1, 2, dataPacket(0, videoObjectPlane(1)));
        file.add(head(whole, kept));
        EXPECT_LE(largestRequest(file.bytes()), justified(file.size())) << kept;
    }
}

}  // namespace
}  // namespace android::ogm::test
