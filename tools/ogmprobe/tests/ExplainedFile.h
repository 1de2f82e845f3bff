// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <OgmFile.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Process.h"
#include "TemporaryFolder.h"

namespace ogmprobe::test {

using android::ogm::test::Bytes;
using android::ogm::test::OggPage;
using android::ogm::test::OgmFile;

inline Bytes sampleBytes(const std::string& name) {
    const std::string path = std::string(OGMPROBE_SAMPLES "/") + name;
    std::ifstream file(path, std::ios::binary);
    Bytes bytes(std::filesystem::file_size(path));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/** Offsets of the pages of an undamaged file. */
inline std::vector<size_t> pageOffsets(const Bytes& file) {
    using namespace android::ogm::test;
    std::vector<size_t> offsets;
    for (size_t offset = 0; offset < file.size();) {
        offsets.push_back(offset);
        const size_t segments = file[offset + kSegmentCountOffset];
        size_t size = kPageHeaderSize + segments;
        for (size_t i = 0; i < segments; ++i) {
            size += file[offset + kPageHeaderSize + i];
        }
        offset += size;
    }
    return offsets;
}

/** The file, with another granule position on the page at the offset. */
inline Bytes withGranule(Bytes bytes, size_t page, uint64_t granule) {
    constexpr size_t kGranule = 6;
    for (size_t i = 0; i < sizeof(granule); ++i) {
        bytes[page + kGranule + i] = static_cast<uint8_t>(granule >> (8 * i));
    }
    return bytes;
}

/** Header pages, then alternating video and audio pages with one packet each. */
inline OgmFile videoAndAudio(size_t videoFrames, size_t audioPackets) {
    android::ogm::test::OneVideoOneAudio content;
    content.videoFrames = videoFrames;
    content.audioPackets = audioPackets;
    content.comments = false;
    return oneVideoOneAudioFile(content);
}

/** A file in a separate folder, and the program's output for it with the real plug-in. */
class ExplainedFile {
  public:
    explicit ExplainedFile(const Bytes& bytes)
        : mPath(mFolder.write("a.ogm", std::string(bytes.begin(), bytes.end()))) {}

    const std::string& path() const { return mPath; }

    ProcessResult run(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"explain", mPath};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runProbe(arguments);
    }

    nlohmann::json document(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> all = options;
        all.push_back("--json");
        return nlohmann::json::parse(run(all).out);
    }

    /** All findings with the identifier. */
    std::vector<nlohmann::json> findings(const std::string& id,
                                         const std::vector<std::string>& options = {}) const {
        std::vector<nlohmann::json> found;
        const nlohmann::json all = document(options);
        for (const auto& finding : all["findings"]) {
            if (finding["id"] == id) {
                found.push_back(finding);
            }
        }
        return found;
    }

    /** Compares text and log line of the finding with the identifier. */
    nlohmann::json expectOne(const std::string& id, const std::string& text,
                             const std::string& line) const {
        const auto found = findings(id);
        EXPECT_EQ(found.size(), 1U) << id << " in " << document().dump(1);
        if (found.size() != 1) {
            return {};
        }
        EXPECT_EQ(found[0]["text"], text);
        const auto& log = found[0]["log"];
        EXPECT_EQ(log.is_null() ? "" : log["text"].get<std::string>(), line);
        return found[0];
    }

    void expectNone(const std::string& id) const { EXPECT_THAT(findings(id), testing::IsEmpty()); }

  private:
    TemporaryFolder mFolder;
    std::string mPath;
};

}  // namespace ogmprobe::test
