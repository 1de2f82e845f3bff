// SPDX-License-Identifier: Apache-2.0
#include "info/AudioDetails.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "codecs/AudioFrame.h"
#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

constexpr std::string_view kLameMark = "LAME";

// ATSC A/52, table 5.8, and the low-frequency channel.
constexpr std::array<const char*, 8> kAc3Layouts = {"dual mono", "mono", "stereo", "3/0",
                                                    "2/1",       "3/1",  "2/2",    "3/2"};
constexpr uint32_t kAc3Stereo = 2;

// ATSC A/52, table 5.7.
constexpr std::array<const char*, 8> kServices = {"complete main",
                                                  "music and effects",
                                                  "for the visually impaired",
                                                  "for the hearing impaired",
                                                  "dialogue",
                                                  "commentary",
                                                  "emergency",
                                                  "voice-over"};

// ISO/IEC 11172-3, 2.4.2.3.
constexpr std::array<const char*, 4> kMpegModes = {"stereo", "joint stereo", "dual mono", "mono"};

AudioDetails mpegDetails(Bytes frame) {
    constexpr size_t kModeByte = 3;
    AudioDetails details;
    details.layout = kMpegModes[frame[kModeByte] >> 6];
    return details;
}

void addLayout(uint32_t acmod, bool hasLow, AudioDetails& details) {
    details.layout = kAc3Layouts[acmod];
    details.layout += hasLow ? acmod > kAc3Stereo ? ".1" : " and a low channel" : "";
}

/** 0 is reserved and treated as 31. */
void addDialogue(uint32_t dialnorm, AudioDetails& details) {
    constexpr int32_t kLowest = 31;
    details.dialogueDb = dialnorm == 0 ? -kLowest : -static_cast<int32_t>(dialnorm);
}

AudioDetails ac3Details(Bytes frame) {
    AudioDetails details;
    BitReader bits(frame);
    bits.skip(16 + 16 + 2 + 6 + 5);  // syncword, crc1, fscod, frmsizecod, bsid
    details.service = kServices[bits.take(3)];
    const uint32_t acmod = bits.take(3);
    // cmixlev, surmixlev, dsurmod
    bits.skip((acmod & 1) != 0 && acmod != 1 ? 2 : 0);
    bits.skip((acmod & 4) != 0 ? 2 : 0);
    bits.skip(acmod == kAc3Stereo ? 2 : 0);
    addLayout(acmod, bits.flag(), details);
    addDialogue(bits.take(5), details);
    return details;
}

AudioDetails enhancedDetails(Bytes frame) {
    AudioDetails details;
    BitReader bits(frame);
    bits.skip(16 + 2 + 3 + 11 + 2 + 2);  // syncword, strmtyp, substreamid, frmsiz, fscod, fscod2
    const uint32_t acmod = bits.take(3);
    addLayout(acmod, bits.flag(), details);
    bits.skip(5);  // bsid
    addDialogue(bits.take(5), details);
    return details;
}

/** "LAME3.100" or "LAME3.99r": the mark, the digits after it, and a letter for a release. */
std::string lameMarkAt(Bytes stream) {
    constexpr std::string_view kReleases = "abr";
    constexpr size_t kLongest = 8;
    const Bytes version = stream.subspan(kLameMark.size());
    const auto most =
            version.begin() + std::min<ptrdiff_t>(version.end() - version.begin(), kLongest);
    auto end = std::find_if_not(version.begin(), most, [](uint8_t byte) {
        return (byte >= '0' && byte <= '9') || byte == '.';
    });
    if (end == version.begin()) {
        return "";
    }
    end += end != most && kReleases.find(static_cast<char>(*end)) != std::string_view::npos ? 1 : 0;
    return std::string(stream.begin(), stream.begin() + (end - stream.begin()));
}

/** The most frequent mark, because frame boundaries cut some marks off. */
std::string lameVersion(Bytes stream) {
    std::map<std::string, size_t> counts;
    auto from = stream.begin();
    while (true) {
        const auto mark = std::search(from, stream.end(), kLameMark.begin(), kLameMark.end());
        if (mark == stream.end()) {
            break;
        }
        from = mark + 1;
        ++counts[lameMarkAt(stream.subspan(static_cast<size_t>(mark - stream.begin())))];
    }
    counts.erase("");
    const auto most =
            std::max_element(counts.begin(), counts.end(),
                             [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.end() ? "" : most->first;
}

}  // namespace

AudioDetails mpegAudioDetails(Bytes stream) {
    for (size_t i = 0; i < stream.size(); ++i) {
        if (mpegAudioFrameAt(stream.subspan(i))) {
            AudioDetails details = mpegDetails(stream.subspan(i));
            details.encoder = lameVersion(stream);
            return details;
        }
    }
    return {};
}

AudioDetails ac3AudioDetails(Bytes stream) {
    for (size_t i = 0; i < stream.size(); ++i) {
        if (const auto frame = ac3FrameAt(stream.subspan(i))) {
            return frame->kind == AudioFrame::Kind::kAc3 ? ac3Details(stream.subspan(i))
                                                         : enhancedDetails(stream.subspan(i));
        }
    }
    return {};
}

std::string audioDetailsText(const AudioDetails& details) {
    std::string text;
    const auto add = [&text](const std::string& words) {
        text += (text.empty() ? "" : ", ") + words;
    };
    if (!details.layout.empty()) {
        add(details.layout);
    }
    if (!details.service.empty()) {
        add("service " + details.service);
    }
    if (details.dialogueDb) {
        add(fmt::format("dialogue at {} dB", *details.dialogueDb));
    }
    if (!details.encoder.empty()) {
        add("encoder " + details.encoder);
    }
    return text;
}

}  // namespace ogmprobe
