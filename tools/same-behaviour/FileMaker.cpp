// SPDX-License-Identifier: Apache-2.0
#include "FileMaker.h"

#include <algorithm>

#include "OggPage.h"
#include "OgmFile.h"
#include "StreamMaker.h"

namespace android::ogm::trace {

namespace {

constexpr size_t kFullSegment = 255;

struct Segment {
    bool beginsPacket;
    bool endsPacket;
    Bytes bytes;
};

/** Writes the packets of a stream into pages, from the first to the last. */
class PageWriter {
  public:
    PageWriter(Random* random, const Stream& stream)
        : mRandom(random), mSerialNo(stream.serialNo), mGranuleStep(stream.granuleStep) {
        for (const Bytes& packet : stream.packets) {
            addSegments(packet);
        }
        constexpr size_t kMaxSegments[] = {1, 2, 3, 5, 8, 8, 15, 40, 250};
        mMaxSegments = random->oneOf(kMaxSegments);
        mOddGranules = random->oneIn(6);
    }

    bool isDone() const { return mNext == mSegments.size(); }
    size_t left() const { return mSegments.size() - mNext; }

    test::OggPage page() {
        test::OggPage page(mSerialNo);
        page.checksum(0).sequence(mSequence++);
        if (!mSegments[mNext].beginsPacket) {
            page.continued();
        }
        size_t ended = 0;
        for (size_t i = mRandom->between(1, mMaxSegments); i > 0 && !isDone(); --i) {
            const Segment& segment = mSegments[mNext++];
            page.lacing(static_cast<uint8_t>(segment.bytes.size())).body(segment.bytes);
            ended += segment.endsPacket ? 1 : 0;
        }
        if (isDone() && mRandom->oneIn(2)) {
            page.endOfStream();
        }
        return page.granule(nextGranule(ended));
    }

  private:
    void addSegments(const Bytes& packet) {
        for (size_t begin = 0; begin <= packet.size(); begin += kFullSegment) {
            const Bytes part = test::head(test::tail(packet, begin), kFullSegment);
            mSegments.push_back({begin == 0, part.size() < kFullSegment, part});
        }
    }

    uint64_t nextGranule(size_t packetsEnded) {
        mGranule += mGranuleStep * packetsEnded;
        if (packetsEnded == 0) {
            return mRandom->oneIn(2) ? test::kNoGranule : mGranule;
        }
        if (mOddGranules && mRandom->oneIn(10)) {
            const uint64_t odd[] = {0, mGranule / 2, mGranule * 3, test::kNoGranule,
                                    uint64_t{1} << 62};
            return mRandom->oneOf(odd);
        }
        return mGranule;
    }

    Random* const mRandom;
    const uint32_t mSerialNo;
    const uint64_t mGranuleStep;
    std::vector<Segment> mSegments;
    size_t mNext = 0;
    size_t mMaxSegments = 1;
    bool mOddGranules = false;
    uint64_t mGranule = 0;
    uint32_t mSequence = 1;
};

StreamSize streamSize(Random* random, FileSize size, bool isFirst) {
    switch (size) {
        case FileSize::kScanned:
            return {random->between(150, 600), random->between(1000, 4000)};
        case FileSize::kLongQueue:
            return isFirst ? StreamSize{random->between(300, 900), random->between(4000, 20000)}
                           : StreamSize{random->between(20, 60), 400};
        default:
            return {random->oneIn(12) ? random->below(12) : random->between(40, 250),
                    random->oneIn(4) ? random->between(600, 3000) : 500};
    }
}

std::vector<Stream> randomStreams(Random* random, FileSize size) {
    std::vector<Stream> streams;
    const size_t count = random->oneIn(50) ? 0 : random->between(1, random->oneIn(4) ? 5 : 3);
    for (size_t i = 0; i < count; ++i) {
        const bool isTwin = i > 0 && random->oneIn(15);
        const uint32_t serialNo =
                isTwin ? streams.front().serialNo
                       : static_cast<uint32_t>(random->oneIn(10) ? random->bits() : i);
        const StreamSize wanted = streamSize(random, size, i == 0);
        if (random->oneIn(i == 0 ? 40 : 12)) {
            streams.push_back(otherStream(random, serialNo, wanted));
        } else if (i == 0 ? !random->oneIn(3) : random->oneIn(5)) {
            streams.push_back(videoStream(random, serialNo, wanted));
        } else {
            streams.push_back(audioStream(random, serialNo, wanted));
        }
    }
    return streams;
}

void addHeaders(Random* random, const std::vector<Stream>& streams, test::OgmFile* file) {
    for (const Stream& stream : streams) {
        if (random->oneIn(150)) {
            file->addJunk(random->below(50));
        }
        file->addHeader(stream.serialNo, stream.header);
    }
    if (random->oneIn(2)) {
        for (const Stream& stream : streams) {
            file->addComment(stream.serialNo);
        }
    }
}

/**
 * The more packets a stream has left, the more likely it is the next one. So pages are roughly in
 * the order of their times.
 */
size_t nextWriter(Random* random, const std::vector<PageWriter>& writers) {
    size_t all = 0;
    for (const PageWriter& writer : writers) {
        all += writer.left();
    }
    size_t chosen = random->below(all);
    for (size_t i = 0;; ++i) {
        if (chosen < writers[i].left()) {
            return i;
        }
        chosen -= writers[i].left();
    }
}

}  // namespace

Bytes randomFile(Random* random, FileSize size) {
    const std::vector<Stream> streams = randomStreams(random, size);
    test::OgmFile file;
    if (random->oneIn(40)) {
        file.addJunk(random->below(300));
    }
    addHeaders(random, streams, &file);
    std::vector<PageWriter> writers;
    writers.reserve(streams.size());
    for (const Stream& stream : streams) {
        writers.emplace_back(random, stream);
    }
    const bool hasJunk = random->oneIn(10);
    while (std::any_of(writers.begin(), writers.end(),
                       [](const PageWriter& writer) { return !writer.isDone(); })) {
        file.add(writers[nextWriter(random, writers)].page());
        if (hasJunk && random->oneIn(12)) {
            file.addJunk(random->below(400));
        }
    }
    return file.bytes();
}

}  // namespace android::ogm::trace
