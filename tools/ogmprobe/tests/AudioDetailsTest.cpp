// SPDX-License-Identifier: Apache-2.0
#include "info/AudioDetails.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes withText(Bytes bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

/** MPEG-1 layer III, 128 kbit/s, 44.1 kHz, after some junk. */
Bytes mpegFrame(uint8_t mode) {
    return {0x55, 0xff, 0xfb, 0x90, static_cast<uint8_t>(mode << 6)};
}

TEST(AudioDetails, OfMpegAudioAreTheModeOfItsChannels) {
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(mpegFrame(0))), "stereo");
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(mpegFrame(1))), "joint stereo");
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(mpegFrame(2))), "dual mono");
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(mpegFrame(3))), "mono");
}

TEST(AudioDetails, NameTheEncoderByTheMarkThatIsThereMostOften) {
    const Bytes bytes = withText(mpegFrame(0), "LAME3.107xLAME3.100UUULAME3.100UULAME");
    EXPECT_EQ(mpegAudioDetails(bytes).encoder, "LAME3.100");
    EXPECT_EQ(mpegAudioDetails(withText(mpegFrame(0), "LAME3.99rU")).encoder, "LAME3.99r");
    EXPECT_EQ(mpegAudioDetails(withText(mpegFrame(0), "LAMENT")).encoder, "");
}

TEST(AudioDetails, OfAc3AreLayoutServiceAndLevelOfSpeech) {
    // acmod 7, lfeon, dialnorm 27; then bsmod 5, acmod 2, dialnorm 0.
    EXPECT_EQ(audioDetailsText(
                      ac3AudioDetails(Bytes{0x0b, 0x77, 0, 0, 0x14, 0x40, 0xe1, 0xd8, 0, 0})),
              "3/2.1, service complete main, dialogue at -27 dB");
    EXPECT_EQ(audioDetailsText(
                      ac3AudioDetails(Bytes{0x0b, 0x77, 0, 0, 0x14, 0x45, 0x40, 0x00, 0, 0})),
              "stereo, service commentary, dialogue at -31 dB");
}

TEST(AudioDetails, OfEnhancedAc3SayNothingOfTheService) {
    EXPECT_EQ(audioDetailsText(
                      ac3AudioDetails(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x3f, 0x87, 0x00, 0, 0, 0})),
              "3/2.1, dialogue at -28 dB");
}

TEST(AudioDetails, AreEmptyWithoutAHeader) {
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(Bytes(10, 0))), "");
    EXPECT_EQ(audioDetailsText(ac3AudioDetails(Bytes(10, 0))), "");
}

}  // namespace
}  // namespace ogmprobe
