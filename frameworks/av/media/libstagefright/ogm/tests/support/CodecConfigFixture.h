// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormatZor.h>
#include <media/stagefright/MediaDefs.h>

#include <optional>
#include <string>
#include <vector>

#include "ElementaryStreams.h"
#include "Format.h"
#include "PagesTest.h"
#include "stream/CodecConfig.h"
#include "stream/HeaderPages.h"

namespace android::ogm::test {

inline constexpr uint32_t kVideo = 1;
inline constexpr uint32_t kAudio = 2;
inline constexpr size_t kEsdsHeaderSize = 25;
inline constexpr size_t kMaxPages = 121;

inline LogLine pageLine(size_t offset, size_t size) {
    return infoLine(formatted("pageOffset=%ld, currPageSize=%d", static_cast<long>(offset),
                              static_cast<int>(size)));
}

inline LogLine payloadLine(size_t size) {
    return infoLine(formatted("pageDataSize = %d", static_cast<int>(size)));
}

inline LogLine growthLine(size_t capacity) {
    return infoLine(formatted("resizing RAW buffer to size %zu", capacity));
}

inline LogLine skipLine(size_t count, size_t from) {
    return infoLine(formatted("*** Skip %ld bytes of junk from %ld to reach page start ***\n",
                              static_cast<long>(count), static_cast<long>(from)));
}

inline LogLine failure(int type, int result) {
    return errorLine(formatted("collect type[%d] fail,result=%d!", type, result));
}

inline ReadCall readOf(size_t offset, size_t size) {
    return {static_cast<int64_t>(offset), size, static_cast<ssize_t>(size)};
}

/** Reads codec configurations from the first data pages of a file. */
class CodecConfigFixture : public PagesTest {
  protected:
    /** Completes the formats of a file's streams; earlier events are not recorded. */
    void collect(std::unique_ptr<MemorySource> source) {
        mStreams.emplace();
        const int64_t firstDataPage = parseHeaderPages(openPages(std::move(source)), &*mStreams);
        mEvents.clear();
        collectCodecConfigs(*mPages, *mStreams, firstDataPage);
    }
    void collect(const OgmFile& file) {
        collect(std::make_unique<MemorySource>(file.bytes(), &mEvents));
    }

    /** A file whose first stream is MPEG-4 video. */
    static OgmFile videoFile() {
        OgmFile file;
        VideoHeader header;
        header.subtype = "FMP4";
        file.addHeader(kVideo, header);
        return file;
    }

    static OgmFile audioFile(const char* tag = "0055") {
        OgmFile file;
        file.addHeader(kAudio, audioHeader(tag));
        return file;
    }

    static AudioHeader audioHeader(const char* tag) {
        AudioHeader header;
        header.subtype = tag;
        return header;
    }

    /** A packet with all that is needed: VOL, picture, and the start code after it. */
    static Bytes wholeConfiguration() { return dataPacket(kSyncPacket, configuredPictures()); }
    static Bytes configuredPictures() {
        return joined({visualObjectSequence(), vol(), vop(), vop()});
    }

    /** The expected events of one page up to its payload. */
    static void addPageEvents(std::vector<Event>& events, size_t offset, const OggPage& page) {
        const size_t headerSize = page.bodyOffset();
        events.emplace_back(readOf(offset, 4));
        events.emplace_back(readOf(offset, kPageHeaderSize));
        events.emplace_back(readOf(offset + kPageHeaderSize, headerSize - kPageHeaderSize));
        events.emplace_back(pageLine(offset, page.size()));
    }
    static void addPayloadEvents(std::vector<Event>& events, size_t offset, const OggPage& page) {
        const size_t payload = page.size() - page.bodyOffset();
        events.emplace_back(payloadLine(payload));
        events.emplace_back(readOf(offset + page.bodyOffset(), payload));
    }

    static void addLines(std::vector<Event>& events, std::initializer_list<const char*> texts) {
        for (const char* text : texts) {
            events.emplace_back(infoLine(text));
        }
    }

    AMediaFormat* formatAt(size_t index) { return (*mStreams)[index].mFormat.get(); }

    std::optional<Bytes> esdsAt(size_t index = 0) {
        return bufferOf(formatAt(index), AMEDIAFORMAT_KEY_ESDS);
    }
    std::optional<Bytes> configurationAt(size_t index = 0) {
        const auto esds = esdsAt(index);
        return esds ? std::optional(tail(*esds, kEsdsHeaderSize)) : std::nullopt;
    }

    std::optional<StreamTable> mStreams;
};

}  // namespace android::ogm::test
