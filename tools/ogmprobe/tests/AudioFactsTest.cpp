// SPDX-License-Identifier: Apache-2.0
#include "info/AudioFacts.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace ogmprobe {
namespace {

std::vector<uint8_t> vorbisHeader(uint8_t nominalBitrate) {
    constexpr std::string_view kBeginning = "\1vorbis";
    std::vector<uint8_t> header(kBeginning.begin(), kBeginning.end());
    header.insert(header.end(), {0, 0, 0, 0, 2, 0x44, 0xac, 0, 0});
    header.insert(header.end(), {0, 0, 0, 0, 0, nominalBitrate, 1, 0, 0, 0, 0, 0, 0xb8, 1});
    return header;
}

TEST(VorbisFacts, AreThoseOfTheIdentificationHeader) {
    const auto facts = vorbisFacts(vorbisHeader(0xf4));
    ASSERT_TRUE(facts);
    EXPECT_EQ(audioFactsText(*facts), "Vorbis, 44100 Hz, 2 channels, 128 kbit/s nominal");
}

TEST(VorbisFacts, AreEmptyForAHeaderThatIsCutOffOrOfAnotherKind) {
    std::vector<uint8_t> header = vorbisHeader(0);
    header.pop_back();
    EXPECT_FALSE(vorbisFacts(header));
    header = vorbisHeader(0);
    header[0] = 3;
    EXPECT_FALSE(vorbisFacts(header));
}

TEST(AudioFactsText, SaysWhetherTheBitrateIsConstant) {
    EXPECT_EQ(audioFactsText({"AC-3", 48000, 1, 64000.0, true}),
              "AC-3, 48000 Hz, 1 channel, 64 kbit/s constant");
    EXPECT_EQ(audioFactsText({"MPEG-2 layer III", 0, 0, 64000.0, false}),
              "MPEG-2 layer III, 64 kbit/s on average");
    EXPECT_EQ(audioFactsText({"DTS", 48000, 6, {}, {}}), "DTS, 48000 Hz, 6 channels");
}

}  // namespace
}  // namespace ogmprobe
