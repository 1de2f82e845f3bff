// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormatZor.h>
#include <media/stagefright/MediaDefs.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test {

inline constexpr uint32_t kVideo = 1;
inline constexpr uint32_t kAudio = 2;
inline constexpr size_t kEsdsHeaderSize = 25;
inline constexpr size_t kMaxPages = 121;

inline Bytes vol() {
    return VideoObjectLayer{}.bytes();
}

inline Bytes vop(size_t size = 40) {
    return videoObjectPlane(0, size);
}

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

/** What is learnt from the first data pages while a file is opened. */
class CodecConfigFixture : public PluginTest {
  protected:
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

    /** A packet that holds all that is needed: VOL, picture, and the start code behind it. */
    static Bytes wholeConfiguration() { return dataPacket(kSyncPacket, configuredPictures()); }
    static Bytes configuredPictures() {
        return joined({visualObjectSequence(), vol(), vop(), vop()});
    }

    /** The events of one page up to its payload, as the walk over the pages causes them. */
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

    /** All events from the line that begins with `prefix` on. */
    std::vector<Event> eventsFrom(const std::string& prefix) const {
        std::vector<Event> events = mEvents.events();
        const auto begins = [&](const Event& event) {
            const auto* line = std::get_if<LogLine>(&event);
            return line != nullptr && line->text.compare(0, prefix.size(), prefix) == 0;
        };
        events.erase(events.begin(), std::find_if(events.begin(), events.end(), begins));
        return events;
    }
    std::vector<Event> videoEvents() const { return eventsFrom("OGV_VIDEO_MP4:TYPE:"); }
    std::vector<Event> audioEvents() const { return eventsFrom("MPEG audio, type:"); }

    static void addLines(std::vector<Event>& events, std::initializer_list<const char*> texts) {
        for (const char* text : texts) {
            events.emplace_back(infoLine(text));
        }
    }

    static std::optional<Bytes> esdsOf(const OpenedFile& opened, size_t index = 0) {
        return opened.extractor.trackFormat(index).buffer(AMEDIAFORMAT_KEY_ESDS);
    }
    static std::optional<Bytes> configurationOf(const OpenedFile& opened, size_t index = 0) {
        const auto esds = esdsOf(opened, index);
        return esds ? std::optional(tail(*esds, kEsdsHeaderSize)) : std::nullopt;
    }
};

}  // namespace android::ogm::test
