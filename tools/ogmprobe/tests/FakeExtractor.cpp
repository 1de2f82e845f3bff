// SPDX-License-Identifier: Apache-2.0
//
// A plug-in whose "media files" are JSON scripts that say what the extractor does:
//
//   {"fake": true,                        without it the plug-in does not take the file
//    "sniff": MISCHIEF, "create": MISCHIEF,
//    "landing": 0,                         buffers by which each seek goes too far
//    "container": {KEY: VALUE...},
//    "tracks": [{"format": {KEY: VALUE...},
//                "buffers": [{"time_us": 0, "sync": 1, "hex": "00ff",
//                             "offset": 0,     where in the buffer the bytes begin
//                             "log": "text", "entries": {KEY: VALUE...}}...],
//                "start": STATUS,         what `start` returns
//                "getFormat": MISCHIEF    when the extractor's format of the track is requested
//                "repeat": true,          begins again after the last buffer
//                "end": MISCHIEF or STATUS, after the last buffer; end of stream by default
//                "keep": true}]}          holds a buffer until after its group is freed
//
// MISCHIEF is one of the words in Mischief.cpp, or "assert TEXT"; "null" makes creation fail. A
// seek goes to the first buffer at or after its time. The framework's calls are logged at info
// level.
#define LOG_TAG "FakeExtractor"

#include <media/MediaExtractorPluginApi.h>
#include <media/MediaExtractorPluginHelper.h>
#include <media/NdkMediaFormat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Mischief.h"

namespace {

using nlohmann::json;
using ogmprobe::test::misbehave;

constexpr size_t kGroupLimit = 64;

std::string readAll(android::CDataSource* source) {
    off64_t size = 0;
    source->getSize(source->handle, &size);
    std::string text(static_cast<size_t>(size), '\0');
    const ssize_t got = source->readAt(source->handle, 0, text.data(), text.size());
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return text;
}

json parse(android::CDataSource* source) {
    return json::parse(readAll(source), nullptr, false);
}

std::string bytesOf(const std::string& hex) {
    std::string bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

// Keys that end in "Us" have 64-bit values, like those of the platform.
void fill(AMediaFormat* format, const json& values) {
    for (const auto& [key, value] : values.items()) {
        if (key == "esds") {
            const std::string bytes = bytesOf(value.get<std::string>());
            AMediaFormat_setBuffer(format, key.c_str(), bytes.data(), bytes.size());
        } else if (value.is_string()) {
            AMediaFormat_setString(format, key.c_str(), value.get<std::string>().c_str());
        } else if (key.size() > 2 && key.compare(key.size() - 2, 2, "Us") == 0) {
            AMediaFormat_setInt64(format, key.c_str(), value.get<int64_t>());
        } else {
            AMediaFormat_setInt32(format, key.c_str(), value.get<int32_t>());
        }
    }
}

class FakeTrack : public android::MediaTrackHelper {
  public:
    FakeTrack(size_t index, const json& script, size_t landing, android::CDataSource* source)
        : mIndex(index), mScript(script), mLanding(landing), mSource(source) {}

    ~FakeTrack() override { ALOGI("free track %zu", mIndex); }

    media_status_t start() override {
        ALOGI("start track %zu", mIndex);
        mBufferGroup->init(1, 16, kGroupLimit);
        return static_cast<media_status_t>(mScript.value("start", 0));
    }

    media_status_t stop() override {
        ALOGI("stop track %zu", mIndex);
        return AMEDIA_OK;
    }

    media_status_t getFormat(AMediaFormat* format) override {
        fill(format, mScript["format"]);
        return AMEDIA_OK;
    }

    media_status_t read(android::MediaBufferHelper** out, const ReadOptions* options) override {
        seekIfAsked(options);
        if (mScript.value("repeat", false)) {
            mNext %= mScript["buffers"].size();
        }
        if (mNext == mScript["buffers"].size()) {
            return atEnd();
        }
        const json& buffer = mScript["buffers"][mNext++];
        if (buffer.contains("log")) {
            ALOGI("%s", buffer["log"].get<std::string>().c_str());
        }
        const std::string bytes = bytesOf(buffer.value("hex", ""));
        const size_t offset = buffer.value("offset", size_t{0});
        const media_status_t status =
                mBufferGroup->acquire_buffer(out, false, offset + bytes.size());
        if (status != AMEDIA_OK) {
            return status;
        }
        std::memset((*out)->data(), 0, offset);
        std::memcpy(static_cast<char*>((*out)->data()) + offset, bytes.data(), bytes.size());
        (*out)->set_range(offset, bytes.size());
        AMediaFormat_clear((*out)->meta_data());
        if (buffer.contains("time_us")) {
            AMediaFormat_setInt64((*out)->meta_data(), AMEDIAFORMAT_KEY_TIME_US,
                                  buffer["time_us"].get<int64_t>());
        }
        AMediaFormat_setInt32((*out)->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME,
                              buffer.value("sync", 0));
        if (buffer.contains("entries")) {
            fill((*out)->meta_data(), buffer["entries"]);
        }
        if (mScript.value("keep", false)) {
            android::MediaBufferHelper* kept = nullptr;
            mBufferGroup->acquire_buffer(&kept, false, 1);
        }
        return AMEDIA_OK;
    }

  private:
    void seekIfAsked(const ReadOptions* options) {
        int64_t timeUs = 0;
        ReadOptions::SeekMode mode = ReadOptions::SEEK_PREVIOUS_SYNC;
        if (!options->getSeekTo(&timeUs, &mode)) {
            return;
        }
        ALOGI("seek track %zu to %lld mode %d", mIndex, static_cast<long long>(timeUs), mode);
        char byte = 0;
        mSource->readAt(mSource->handle, 0, &byte, 1);
        mNext = 0;
        while (mNext < mScript["buffers"].size() &&
               mScript["buffers"][mNext].value("time_us", int64_t{0}) < timeUs) {
            ++mNext;
        }
        mNext = std::min(mNext + mLanding, mScript["buffers"].size());
    }

    media_status_t atEnd() const {
        const auto end = mScript.find("end");
        if (end == mScript.end()) {
            return AMEDIA_ERROR_END_OF_STREAM;
        }
        if (end->is_number()) {
            return static_cast<media_status_t>(end->get<int>());
        }
        misbehave(end->get<std::string>(), mSource);
        return AMEDIA_ERROR_END_OF_STREAM;
    }

    const size_t mIndex;
    const json& mScript;
    const size_t mLanding;
    android::CDataSource* const mSource;
    size_t mNext = 0;
};

class FakeExtractor : public android::MediaExtractorPluginHelper {
  public:
    FakeExtractor(json script, android::CDataSource* source)
        : mScript(std::move(script)), mSource(source) {}

    ~FakeExtractor() override { ALOGI("free extractor"); }

    size_t countTracks() override {
        ALOGI("countTracks");
        return mScript["tracks"].size();
    }

    android::MediaTrackHelper* getTrack(size_t index) override {
        ALOGI("getTrack %zu", index);
        return new FakeTrack(index, mScript["tracks"][index], mScript.value("landing", size_t{0}),
                             mSource);
    }

    media_status_t getTrackMetaData(AMediaFormat* meta, size_t index, uint32_t) override {
        misbehave(mScript["tracks"][index].value("getFormat", ""), mSource);
        fill(meta, mScript["tracks"][index]["format"]);
        return AMEDIA_OK;
    }

    media_status_t getMetaData(AMediaFormat* meta) override {
        ALOGI("getMetaData");
        fill(meta, mScript["container"]);
        return AMEDIA_OK;
    }

    const char* name() override {
        ALOGI("name");
        return "fake";
    }

  private:
    json mScript;
    android::CDataSource* const mSource;
};

android::CMediaExtractor* create(android::CDataSource* source, void*) {
    json script = parse(source);
    const std::string mischief = script.value("create", "");
    misbehave(mischief, source);
    if (mischief == "null") {
        return nullptr;
    }
    return android::wrap(new FakeExtractor(std::move(script), source));
}

android::CreatorFunc sniff(android::CDataSource* source, float* confidence, void**,
                           android::FreeMetaFunc*) {
    const json script = parse(source);
    if (!script.is_object() || !script.value("fake", false)) {
        return nullptr;
    }
    misbehave(script.value("sniff", ""), source);
    *confidence = 0.5;
    return create;
}

const char* kTypes[] = {"fake", nullptr};

/** Whether the environment asks for a definition without this, which a loader refuses. */
bool lacks(const char* what) {
    const char* asked = std::getenv("FAKE_EXTRACTOR_LACKS");
    return asked != nullptr && std::strcmp(asked, what) == 0;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) android::ExtractorDef GETEXTRACTORDEF() {
    ogmprobe::test::lookForSharedMemory();
    return {lacks("version") ? android::EXTRACTORDEF_VERSION + 1 : android::EXTRACTORDEF_VERSION,
            lacks("uuid") ? android::media_uuid_t{}
                          : android::UUID("6f1c53a0-7b0a-4d57-9d2e-3a54c1f0e8b7"),
            1,
            lacks("name")      ? nullptr
            : lacks("letters") ? ""
                               : "Fake Extractor",
            {.v3 = {sniff, lacks("types") ? nullptr : kTypes}}};
}
