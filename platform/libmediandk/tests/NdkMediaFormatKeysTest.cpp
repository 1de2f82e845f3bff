// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormat.h>

#include <dlfcn.h>

#include <fstream>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

namespace {

TEST(NdkMediaFormatKeysTest, TheKeysHaveTheirTexts) {
    const std::pair<const char*, const char*> keys[] = {
            {AMEDIAFORMAT_KEY_MIME, "mime"},
            {AMEDIAFORMAT_KEY_WIDTH, "width"},
            {AMEDIAFORMAT_KEY_HEIGHT, "height"},
            {AMEDIAFORMAT_KEY_FRAME_RATE, "frame-rate"},
            {AMEDIAFORMAT_KEY_SAMPLE_RATE, "sample-rate"},
            {AMEDIAFORMAT_KEY_CHANNEL_COUNT, "channel-count"},
            {AMEDIAFORMAT_KEY_DURATION, "durationUs"},
            {AMEDIAFORMAT_KEY_TIME_US, "timeUs"},
            {AMEDIAFORMAT_KEY_THUMBNAIL_TIME, "thumbnail-time"},
            {AMEDIAFORMAT_KEY_ESDS, "esds"},
            {AMEDIAFORMAT_KEY_IS_SYNC_FRAME, "is-sync-frame"},
            {AMEDIAFORMAT_KEY_TARGET_TIME, "target-time"},
            {AMEDIAFORMAT_KEY_BIT_RATE, "bitrate"},
            {AMEDIAFORMAT_KEY_MAX_INPUT_SIZE, "max-input-size"},
            {AMEDIAFORMAT_KEY_LANGUAGE, "language"},
            {AMEDIAFORMAT_KEY_TRACK_ID, "track-id"},
            {AMEDIAFORMAT_KEY_BITS_PER_SAMPLE, "bits-per-sample"},
            {AMEDIAFORMAT_KEY_CSD_0, "csd-0"},
            {AMEDIAFORMAT_KEY_MAX_BIT_RATE, "max-bitrate"},
            {AMEDIAFORMAT_KEY_TITLE, "title"},
            {AMEDIAFORMAT_KEY_CSD_AVC, "csd-avc"},
            {AMEDIAFORMAT_KEY_CSD_HEVC, "csd-hevc"},
            {AMEDIAFORMAT_KEY_MPEG2_STREAM_HEADER, "mpeg2-stream-header"},
            {AMEDIAFORMAT_KEY_D263, "d263"},
            {AMEDIAFORMAT_KEY_VALID_SAMPLES, "valid-samples"},
    };
    for (const auto& [key, text] : keys) {
        EXPECT_STREQ(text, key);
    }
}

TEST(NdkMediaFormatKeysTest, OfTheDeclaredKeys135AreDefined) {
    std::ifstream header(FORMAT_HEADER);
    size_t count = 0;
    for (std::string word; header >> word;) {
        if (word.rfind("AMEDIAFORMAT_KEY_", 0) != 0 || word.back() != ';') {
            continue;
        }
        word.pop_back();
        if (dlsym(RTLD_DEFAULT, word.c_str()) != nullptr) {
            ++count;
        }
    }
    EXPECT_EQ(135U, count);
}

TEST(NdkMediaFormatKeysTest, AKeyIsAVariableOfTheLibrary) {
    static_assert(std::is_same_v<decltype(AMEDIAFORMAT_KEY_MIME), const char*>);
    EXPECT_EQ(&AMEDIAFORMAT_KEY_MIME, dlsym(RTLD_DEFAULT, "AMEDIAFORMAT_KEY_MIME"));
}

TEST(NdkMediaFormatKeysTest, SomeNamesAreDeclaredButNotDefined) {
    for (const char* name :
         {"AMEDIAFORMAT_KEY_AUDIO_PRESENTATION_PRESENTATION_ID",
          "AMEDIAFORMAT_KEY_AUDIO_PRESENTATION_PROGRAM_ID", "AMEDIAFORMAT_KEY_PICTURE_TYPE",
          "AMEDIAFORMAT_KEY_VIDEO_ENCODING_STATISTICS_LEVEL", "AMEDIAFORMAT_KEY_VIDEO_QP_AVERAGE",
          "AMEDIAFORMAT_VIDEO_QP_B_MAX", "AMEDIAFORMAT_VIDEO_QP_B_MIN",
          "AMEDIAFORMAT_VIDEO_QP_I_MAX", "AMEDIAFORMAT_VIDEO_QP_I_MIN", "AMEDIAFORMAT_VIDEO_QP_MAX",
          "AMEDIAFORMAT_VIDEO_QP_MIN", "AMEDIAFORMAT_VIDEO_QP_P_MAX",
          "AMEDIAFORMAT_VIDEO_QP_P_MIN"}) {
        EXPECT_EQ(nullptr, dlsym(RTLD_DEFAULT, name)) << name;
    }
}

TEST(NdkMediaFormatKeysTest, TheVendorKeyIsNotPartOfThisLibrary) {
    EXPECT_EQ(nullptr, dlsym(RTLD_DEFAULT, "AMEDIAFORMAT_KEY_MPEG_AUD_LAYER"));
}

}  // namespace
