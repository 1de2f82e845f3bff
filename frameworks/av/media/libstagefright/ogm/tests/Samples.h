// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "Bytes.h"

namespace android::ogm::test {

/** The samples in data/samples, without the long one. */
inline constexpr const char* kShortSamples[] = {
        "divx3_pcm16", "h264_mp3vbr",   "mjpeg",      "mpeg2_ac3",    "mpeg4_2997_ac3",
        "mpeg4_b_mp3", "mpeg4_mp3_ac3", "mpeg4_pcm8", "mpeg4_vorbis", "xvid_refused_mp3"};
/** The sample that is long enough for a duration. */
inline constexpr char kLongSample[] = "long_mpeg4_mp3";

/** The folder of samples and golden dumps: set by the build; on a device beside the program. */
inline std::filesystem::path testData() {
#ifdef OGM_TEST_DATA
    return OGM_TEST_DATA;
#else
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / "tests" / "data";
#endif
}

inline Bytes fileBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot open " + path.string());
    }
    Bytes bytes(std::filesystem::file_size(path));
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

inline Bytes sampleBytes(const std::string& name) {
    return fileBytes(testData() / "samples" / (name + ".ogm"));
}

}  // namespace android::ogm::test
