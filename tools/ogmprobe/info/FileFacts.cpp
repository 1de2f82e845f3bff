// SPDX-License-Identifier: Apache-2.0
#include "info/FileFacts.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <map>
#include <string_view>

#include "explain/LogTexts.h"
#include "info/StreamReader.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

/** The largest bitrate is measured over one second. */
constexpr int64_t kBitrateInterval = kUsPerSecond;

/** Enough bytes for several pictures, to count B pictures, and for frames with an encoder's mark.
 */
constexpr size_t kManyPictures = 1 << 18;
constexpr size_t kManyFrames = 1 << 15;

using ReadFacts = std::optional<VideoFacts> (*)(std::span<const uint8_t>);

struct VideoFamily {
    std::string_view codec;
    /** Null: the stream has no useful headers. */
    ReadFacts read;
};

/** Beginnings of FOURCCs in capital letters; all others mean MPEG-4 part 2. */
constexpr std::array<VideoFamily, 20> kVideoFamilies = {{
        {"H264", h264Facts},  {"X264", h264Facts}, {"AVC", h264Facts},   {"DAVC", h264Facts},
        {"VSSH", h264Facts},  {"MPG", mpeg2Facts}, {"MPEG", mpeg2Facts}, {"MP2V", mpeg2Facts},
        {"MP1V", mpeg2Facts}, {"MJPG", nullptr},   {"WMV", nullptr},     {"VP", nullptr},
        {"DIV3", nullptr},    {"DIV4", nullptr},   {"DIV5", nullptr},    {"DIV6", nullptr},
        {"MP43", nullptr},    {"MP42", nullptr},   {"MP41", nullptr},    {"COL", nullptr},
}};

ReadFacts factsReader(std::string codec) {
    std::transform(codec.begin(), codec.end(), codec.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    const auto* family =
            std::find_if(kVideoFamilies.begin(), kVideoFamilies.end(),
                         [&codec](const VideoFamily& row) { return codec.starts_with(row.codec); });
    return family == kVideoFamilies.end() ? mpeg4Facts : family->read;
}

/** Collects facts from one stream's pages. */
class StreamFactsBuilder {
  public:
    StreamFactsBuilder(const OggFile& file, const OggStream& stream, StreamReader& reader)
        : mFile(file), mStream(stream), mReader(reader) {}

    StreamFacts build() {
        mFacts.serial = mStream.serial;
        const StreamHeader* header = mFile.headerOf(mStream.serial);
        mFacts.kind = kindName(header != nullptr ? header->kind : StreamKind::kOther);
        mFacts.codec = header != nullptr ? header->codec : "";
        if (header != nullptr && header->kind == StreamKind::kAudio && header->bitsPerSample != 0) {
            mFacts.bitsPerSample = header->bitsPerSample;
        }
        const size_t firstData = addComments();
        addPackets(firstData);
        if (header != nullptr && header->kind == StreamKind::kVideo) {
            addFrameRate(*header);
            addVideo(firstData);
        }
        if (header != nullptr && header->kind == StreamKind::kAudio) {
            addAudioDetails(firstData);
        }
        if (header != nullptr && header->kind == StreamKind::kVorbis) {
            mFacts.audio = vorbisFacts(mReader.body(mFile.pages()[*mStream.announcement]));
        }
        return std::move(mFacts);
    }

  private:
    /** Returns the number of pages of the comment header. */
    size_t addComments() {
        if (mStream.dataPages.empty() ||
            !mFile.pages()[mStream.dataPages.front()].beginsWithComment) {
            return 0;
        }
        size_t pages = 0;
        const auto bytes = mReader.bodiesFrom(
                mStream, 0, [&pages](const OggPage& page, const std::vector<uint8_t>&) {
                    ++pages;
                    return page.packets > 0;
                });
        mFacts.comments = parseComments(bytes).value_or(Comments());
        return pages;
    }

    void addPackets(size_t firstData) {
        std::map<int64_t, uint64_t> bytesByInterval;
        for (size_t i = firstData; i < mStream.dataPages.size(); ++i) {
            const OggPage& page = mFile.pages()[mStream.dataPages[i]];
            mFacts.packets += page.packets;
            mFacts.bytes += page.bodySize - std::min(page.missingBytes, page.bodySize);
            if (const auto timeUs = mFile.timeUs(page); timeUs && page.granule != kNoGranule) {
                mFacts.durationUs = std::max(mFacts.durationUs.value_or(0), *timeUs);
                bytesByInterval[*timeUs / kBitrateInterval] += page.bodySize;
            }
        }
        constexpr double kPercent = 100;
        mFacts.percentOfFile = kPercent * static_cast<double>(mFacts.bytes) /
                               static_cast<double>(std::max<uint64_t>(mFile.size(), 1));
        addBitrates(bytesByInterval);
    }

    void addBitrates(const std::map<int64_t, uint64_t>& bytesByInterval) {
        if (mFacts.durationUs.value_or(0) <= 0) {
            return;
        }
        constexpr double kBits = 8;
        const double seconds =
                static_cast<double>(*mFacts.durationUs) / static_cast<double>(kUsPerSecond);
        mFacts.averageBitrate = kBits * static_cast<double>(mFacts.bytes) / seconds;
        uint64_t most = 0;
        for (const auto& [interval, bytes] : bytesByInterval) {
            most = std::max(most, bytes);
        }
        mFacts.largestBitrate = std::max(*mFacts.averageBitrate, kBits * static_cast<double>(most));
    }

    void addFrameRate(const StreamHeader& header) {
        if (header.timeUnit != 0 && header.samplesPerUnit != 0) {
            mFacts.frameRate = static_cast<double>(kUnitsPerSecond) *
                               static_cast<double>(header.samplesPerUnit) /
                               static_cast<double>(header.timeUnit);
        }
    }

    void addVideo(size_t firstData) {
        const ReadFacts readFacts = factsReader(mFacts.codec);
        if (readFacts == nullptr) {
            return;
        }
        const auto pictures = mReader.bodiesFrom(
                mStream, firstData, [&](const OggPage&, const std::vector<uint8_t>& bytes) {
                    mFacts.video = mFacts.video ? mFacts.video : readFacts(bytes);
                    return mFacts.video && bytes.size() >= kManyPictures;
                });
        if (mFacts.video && readFacts != h264Facts) {
            mFacts.video->bPictures = mostBPictures(pictures);
        }
    }

    void addAudioDetails(size_t firstData) {
        using ReadDetails = AudioDetails (*)(std::span<const uint8_t>);
        const auto framing = framingOf(mFacts.codec);
        const ReadDetails read = framing == AudioFraming::kMpegAudio ? mpegAudioDetails
                                 : framing == AudioFraming::kAc3     ? ac3AudioDetails
                                                                     : nullptr;
        if (read != nullptr) {
            mFacts.audioDetails = read(mReader.bodiesFrom(
                    mStream, firstData, [](const OggPage&, const std::vector<uint8_t>& bytes) {
                        return bytes.size() >= kManyFrames;
                    }));
        }
    }

    const OggFile& mFile;
    const OggStream& mStream;
    StreamReader& mReader;
    StreamFacts mFacts;
};

/** If the plug-in logs nothing about it, `explain` finds more. */
std::string whyNoTrack(const OggFile& file, const OggStream& stream, const TrackSources& sources) {
    if (!stream.announcement) {
        return "no header page";
    }
    if (*stream.announcement >= kHeaderPages) {
        return fmt::format("announced after page {}", kHeaderPages);
    }
    const OggPage& page = file.pages()[*stream.announcement];
    const StreamHeader& header = *page.announced;
    switch (header.kind) {
        case StreamKind::kVorbis:
        case StreamKind::kTheora:
            return header.name() + ": ignored";
        case StreamKind::kText:
            return "text";
        case StreamKind::kVideo:
            return sources.refusedVideo ? "unknown codec " + header.codec : "reason unknown";
        case StreamKind::kAudio:
            return sources.refusedAudio ? "unknown codec " + header.codec : "reason unknown";
        case StreamKind::kOther:
            break;
    }
    return "unknown header";
}

/** Without a line for each track it is unknown which stream belongs to which track. */
void assignTracks(const OggFile& file, const TrackSources& sources, FileFacts& facts) {
    if (sources.accepted.size() != sources.tracks) {
        return;
    }
    for (StreamFacts& stream : facts.streams) {
        const auto found =
                std::find(sources.accepted.begin(), sources.accepted.end(), stream.serial);
        if (found != sources.accepted.end()) {
            stream.track = static_cast<uint64_t>(found - sources.accepted.begin());
        } else {
            stream.whyNoTrack = whyNoTrack(file, file.streams().at(stream.serial), sources);
        }
    }
}

size_t firstPage(const OggStream& stream) {
    return stream.announcement ? *stream.announcement : stream.dataPages.front();
}

std::vector<const OggStream*> inOrder(const OggFile& file) {
    std::vector<const OggStream*> streams;
    for (const auto& [serial, stream] : file.streams()) {
        streams.push_back(&stream);
    }
    std::sort(streams.begin(), streams.end(),
              [](const OggStream* a, const OggStream* b) { return firstPage(*a) < firstPage(*b); });
    return streams;
}

}  // namespace

uint64_t FileFacts::streamsWithoutTrack() const {
    return static_cast<uint64_t>(
            std::count_if(streams.begin(), streams.end(),
                          [](const StreamFacts& stream) { return !stream.whyNoTrack.empty(); }));
}

void TrackSources::add(const LogLine& line) {
    refusedVideo = refusedVideo || line.text.starts_with(log_text::kUnknownVideo);
    refusedAudio = refusedAudio || line.text.starts_with(log_text::kUnknownAudio);
    if (line.text.starts_with(log_text::kStreamAccepted)) {
        int32_t serial = 0;
        std::from_chars(line.text.data() + log_text::kStreamAccepted.size(),
                        line.text.data() + line.text.size(), serial);
        accepted.push_back(static_cast<uint32_t>(serial));
    }
}

FileFacts fileFacts(const std::string& path, const TrackSources& sources) {
    const OggFile file(path);
    StreamReader reader(path, file);
    OggScanner scanner(path);
    const auto packets = packetsOf(file);
    FileFacts facts;
    for (const OggStream* stream : inOrder(file)) {
        facts.streams.push_back(StreamFactsBuilder(file, *stream, reader).build());
        StreamFacts& added = facts.streams.back();
        if (const auto found = packets.find(stream->serial);
            found != packets.end() && added.kind == kindName(StreamKind::kAudio)) {
            added.audio = framedAudioFacts(file, found->second, added.codec, scanner);
        }
        if (added.durationUs) {
            facts.durationUs = std::max(facts.durationUs.value_or(0), *added.durationUs);
        }
        if (facts.chapters.empty()) {
            facts.chapters = chaptersOf(added.comments);
        }
    }
    if (facts.durationUs.value_or(0) > 0) {
        constexpr double kBits = 8;
        facts.bitrate = kBits * static_cast<double>(file.size()) * kUsPerSecond /
                        static_cast<double>(*facts.durationUs);
    }
    assignTracks(file, sources, facts);
    return facts;
}

}  // namespace ogmprobe
