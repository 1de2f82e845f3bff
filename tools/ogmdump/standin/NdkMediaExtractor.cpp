// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <media/NdkMediaExtractor.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ExitCode.h"
#include "codecs/Esds.h"
#include "plugin/Extractor.h"
#include "plugin/FileSource.h"
#include "plugin/PluginLibrary.h"

/*
 * Replaces the device's public extractor: implements its functions with a plug-in that is loaded
 * into the program itself. The plug-in is the one beside the program, or the one in OGMDUMP_PLUGIN.
 * As on a device, the current track is the selected one whose sample has the lowest time.
 */

namespace {

/** A track and its next sample. */
struct Lane {
    std::unique_ptr<ogmprobe::Track> track;
    std::optional<ogmprobe::Packet> sample;
    bool hasEnded = false;

    void read(const std::optional<ogmprobe::SeekRequest>& seek) {
        auto result = track->read(seek);
        sample = std::move(result.packet);
        hasEnded = !sample || result.withoutTime;
        if (hasEnded) {
            sample.reset();
        }
    }
};

/** A device returns the decoder's configuration of an ESDS as csd-0. */
void setConfiguration(const ogmprobe::Format& own, AMediaFormat* format) {
    const auto esds = own.buffer(AMEDIAFORMAT_KEY_ESDS);
    const auto descriptor = esds ? ogmprobe::parseEsDescriptor(*esds) : std::nullopt;
    if (descriptor && descriptor->decoderConfig && descriptor->decoderConfig->decoderSpecificInfo) {
        const auto& info = *descriptor->decoderConfig->decoderSpecificInfo;
        AMediaFormat_setBuffer(format, AMEDIAFORMAT_KEY_CSD_0, info.data(), info.size());
    }
}

std::filesystem::path pluginPath() {
    if (const char* path = std::getenv("OGMDUMP_PLUGIN")) {
        return path;
    }
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto beside = ogmprobe::PluginLibrary::findBeside(program.parent_path());
    return beside.value_or("");
}

}  // namespace

struct AMediaExtractor {
    // Each member uses those before it during its lifetime.
    std::optional<ogmprobe::PluginLibrary> library;
    std::optional<ogmprobe::FileSource> source;
    std::unique_ptr<ogmprobe::Extractor> extractor;
    /** By their indices; those that are not selected have no track. */
    std::vector<Lane> lanes;

    Lane* current() {
        Lane* first = nullptr;
        for (Lane& lane : lanes) {
            if (lane.track && !lane.sample && !lane.hasEnded) {
                lane.read(std::nullopt);
            }
            if (lane.sample && (first == nullptr || lane.sample->timeUs < first->sample->timeUs)) {
                first = &lane;
            }
        }
        return first;
    }
};

// On a device the log is written by another process.
AMediaExtractor* AMediaExtractor_new() {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    return new AMediaExtractor;
}

media_status_t AMediaExtractor_delete(AMediaExtractor* extractor) {
    delete extractor;
    return AMEDIA_OK;
}

media_status_t AMediaExtractor_setDataSourceFd(AMediaExtractor* extractor, int fd, off64_t offset,
                                               off64_t) {
    if (offset != 0) {
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    try {
        extractor->library.emplace(pluginPath());
        extractor->source.emplace("/proc/self/fd/" + std::to_string(fd));
        extractor->extractor = extractor->library->open(extractor->source->table());
        extractor->lanes.resize(extractor->extractor->trackCount());
        return AMEDIA_OK;
    } catch (const ogmprobe::ProbeError&) {
        return AMEDIA_ERROR_UNSUPPORTED;
    }
}

size_t AMediaExtractor_getTrackCount(AMediaExtractor* extractor) {
    return extractor->lanes.size();
}

AMediaFormat* AMediaExtractor_getTrackFormat(AMediaExtractor* extractor, size_t index) {
    const ogmprobe::Format own = extractor->extractor->trackFormat(index);
    AMediaFormat* format = AMediaFormat_new();
    AMediaFormat_copy(format, own.get());
    setConfiguration(own, format);
    return format;
}

media_status_t AMediaExtractor_selectTrack(AMediaExtractor* extractor, size_t index) {
    if (index >= extractor->lanes.size()) {
        return AMEDIA_ERROR_INVALID_PARAMETER;
    }
    Lane& lane = extractor->lanes[index];
    if (lane.track == nullptr) {
        lane.track = extractor->extractor->track(index);
    }
    return lane.track != nullptr ? lane.track->start() : AMEDIA_ERROR_UNKNOWN;
}

int AMediaExtractor_getSampleTrackIndex(AMediaExtractor* extractor) {
    const Lane* lane = extractor->current();
    return lane != nullptr ? static_cast<int>(lane->track->index()) : -1;
}

int64_t AMediaExtractor_getSampleTime(AMediaExtractor* extractor) {
    const Lane* lane = extractor->current();
    return lane != nullptr ? lane->sample->timeUs : -1;
}

uint32_t AMediaExtractor_getSampleFlags(AMediaExtractor* extractor) {
    const Lane* lane = extractor->current();
    const bool isSync = lane != nullptr && lane->sample->isSync;
    return isSync ? uint32_t{AMEDIAEXTRACTOR_SAMPLE_FLAG_SYNC} : 0U;
}

ssize_t AMediaExtractor_getSampleSize(AMediaExtractor* extractor) {
    const Lane* lane = extractor->current();
    return lane != nullptr ? static_cast<ssize_t>(lane->sample->bytes.size()) : -1;
}

ssize_t AMediaExtractor_readSampleData(AMediaExtractor* extractor, uint8_t* buffer,
                                       size_t capacity) {
    const Lane* lane = extractor->current();
    if (lane == nullptr || lane->sample->bytes.size() > capacity) {
        return -1;
    }
    std::copy(lane->sample->bytes.begin(), lane->sample->bytes.end(), buffer);
    return static_cast<ssize_t>(lane->sample->bytes.size());
}

bool AMediaExtractor_advance(AMediaExtractor* extractor) {
    if (Lane* lane = extractor->current()) {
        lane->sample.reset();
    }
    return extractor->current() != nullptr;
}

media_status_t AMediaExtractor_seekTo(AMediaExtractor* extractor, int64_t seekPosUs,
                                      SeekMode mode) {
    for (Lane& lane : extractor->lanes) {
        if (lane.track) {
            lane.read(ogmprobe::SeekRequest{seekPosUs,
                                            static_cast<android::CMediaTrackReadOptions>(mode)});
        }
    }
    return AMEDIA_OK;
}
