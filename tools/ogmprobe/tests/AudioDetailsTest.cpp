// SPDX-License-Identifier: Apache-2.0
#include "info/AudioDetails.h"

#include <BitWriter.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
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

/** A header of AC-3 at 48 kHz and 128 kbit/s. */
Bytes ac3Header(uint32_t service, uint32_t layout, bool hasLow, uint32_t dialogue) {
    android::ogm::test::BitWriter bits;
    bits.put(0x0b77, 16).put(0, 16).put(0x14, 8).put(8, 5).put(service, 3).put(layout, 3);
    bits.put(0xf, layout != 1 && layout % 2 != 0 ? 2 : 0);
    bits.put(0xf, layout >= 4 ? 2 : 0);
    bits.put(0xf, layout == 2 ? 2 : 0);
    bits.put(hasLow ? 1 : 0, 1).put(dialogue, 5).put(0, 24);
    return bits.bytes();
}

TEST(AudioDetails, NameEachLayoutOfAc3) {
    struct Case {
        const char* alone;
        const char* withLow;
    };
    const std::vector<Case> layouts = {{"dual mono", "dual mono and a low channel"},
                                       {"mono", "mono and a low channel"},
                                       {"stereo", "stereo and a low channel"},
                                       {"3/0", "3/0.1"},
                                       {"2/1", "2/1.1"},
                                       {"3/1", "3/1.1"},
                                       {"2/2", "2/2.1"},
                                       {"3/2", "3/2.1"}};
    for (uint32_t layout = 0; layout < layouts.size(); ++layout) {
        const auto alone = ac3AudioDetails(ac3Header(0, layout, false, 20));
        EXPECT_EQ(alone.layout, layouts[layout].alone);
        EXPECT_EQ(alone.dialogueDb, -20) << layout;
        const auto withLow = ac3AudioDetails(ac3Header(0, layout, true, 1));
        EXPECT_EQ(withLow.layout, layouts[layout].withLow);
        EXPECT_EQ(withLow.dialogueDb, -1) << layout;
    }
}

TEST(AudioDetails, NameEachServiceOfAc3) {
    const std::vector<std::string> services = {"complete main",
                                               "music and effects",
                                               "for the visually impaired",
                                               "for the hearing impaired",
                                               "dialogue",
                                               "commentary",
                                               "emergency",
                                               "voice-over"};
    for (uint32_t service = 0; service < services.size(); ++service) {
        EXPECT_EQ(ac3AudioDetails(ac3Header(service, 2, false, 31)).service, services[service]);
    }
}

TEST(AudioDetails, TakeAMarkOnlyAsFarAsItIsAVersion) {
    const std::vector<std::pair<std::string, std::string>> marks = {
            {"LAME", ""},
            {"LAMEr", ""},
            {"LAME3", "LAME3"},
            {"LAME3.90a", "LAME3.90a"},
            {"LAME3.90b.", "LAME3.90b"},
            {"LAME3.90c", "LAME3.90"},
            {"LAME3.90rr", "LAME3.90r"},
            {"LAME3.100.9", "LAME3.100.9"},
            {"LAME3.100.999", "LAME3.100.99"},
            {"LAME3.100.99r", "LAME3.100.99"},
            {"LAME3.100.9r", "LAME3.100.9r"},
            {"LAME/:", ""},
    };
    for (const auto& [text, version] : marks) {
        EXPECT_EQ(mpegAudioDetails(withText(mpegFrame(0), text)).encoder, version) << text;
    }
}

TEST(AudioDetails, AreEmptyWithoutAHeader) {
    EXPECT_EQ(audioDetailsText(mpegAudioDetails(Bytes(10, 0))), "");
    EXPECT_EQ(audioDetailsText(ac3AudioDetails(Bytes(10, 0))), "");
}

}  // namespace
}  // namespace ogmprobe
