// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "page/Sniff.h"

#include <log/log.h>

#include <algorithm>
#include <optional>

#include "base/ByteView.h"
#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android {

using ogm::ByteView;
using ogm::wrapAdd;
using ogm::wrapSub;

namespace {

constexpr uint32_t kCapturePatternSize = ogm::kCapturePattern.size();

// Offsets in a page with one lacing value.
constexpr uint32_t kSegmentCountOffset = ogm::kNumSegmentsOffset;
constexpr uint32_t kFirstLacingOffset = ogm::kLacingOffset;
constexpr uint32_t kPacketOffset = kFirstLacingOffset + 1;
constexpr uint32_t kIdentificationOffset = kPacketOffset + 1;

enum class Identification { kNone, kVideo, kAudio, kVorbis };

/** The kind of stream that the first packet of the page at `page` announces. */
Identification identify(ByteView data, uint32_t page) {
    const uint32_t identification = wrapAdd(page, kIdentificationOffset);
    if (data[wrapAdd(page, kPacketOffset)] == ogm::kStreamHeaderPacket) {
        if (data.holds("video", identification)) {
            return Identification::kVideo;
        }
        if (data.holds("audio", identification)) {
            return Identification::kAudio;
        }
    }
    if (data.holds("theora", identification)) {
        return Identification::kVideo;
    }
    return data.holds("vorbis", identification) ? Identification::kVorbis : Identification::kNone;
}

/** How many bytes after `position` the next page starts; nothing if there is none. */
std::optional<uint32_t> findPageStart(ByteView data, uint32_t position) {
    // The test is of the start of the buffer, not of `position`. So in a file that begins with a
    // page, each later page is assumed to start where the page before ends, whatever is there.
    if (data.holds(ogm::kCapturePattern, 0)) {
        return 0;
    }
    const auto size = static_cast<uint32_t>(data.size());
    const uint32_t rest = wrapSub(wrapSub(size, kCapturePatternSize), position);
    // `rest` may have wrapped to a huge number; nothing is found past the end of the buffer.
    const uint32_t candidates = std::min(std::max(rest, 1U), size);
    for (uint32_t skip = 0; skip < candidates; ++skip) {
        if (data.holds(ogm::kCapturePattern, wrapAdd(position, skip))) {
            return skip;
        }
    }
    return std::nullopt;
}

}  // namespace

bool sniffOgm(const uint8_t* bytes, uint32_t size, uint8_t* isVorbisExist) {
    if (size == kCapturePatternSize) {
        return false;
    }
    const ByteView data(bytes, size);
    uint32_t position = 0;
    do {
        const std::optional<uint32_t> skip = findPageStart(data, position);
        if (!skip) {
            ALOGE("search Ogm signature fail\n");
            return false;
        }
        const uint32_t page = wrapAdd(position, *skip);
        if (data[wrapAdd(page, kSegmentCountOffset)] == 1) {
            switch (identify(data, page)) {
                case Identification::kVideo:
                    ALOGI("Find Video pattern\n");
                    return true;
                case Identification::kAudio:
                    ALOGI("Find non-vorbis audio in OGM file");
                    return true;
                case Identification::kVorbis:
                    ALOGI("Find Vorbis audio\n");
                    *isVorbisExist = 1;
                    break;
                case Identification::kNone:
                    break;
            }
        }
        // Right only for a page of one segment, but used for all pages.
        position = wrapAdd(wrapAdd(page, kPacketOffset), data[wrapAdd(page, kFirstLacingOffset)]);
    } while (position < wrapSub(size, kCapturePatternSize));
    return false;
}

}  // namespace android
