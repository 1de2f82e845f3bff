// SPDX-License-Identifier: Apache-2.0
#include "check/DecoderChoice.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ogmprobe::check {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Decoder videoDecoder(const std::string& name) {
    Decoder decoder{name, "video/avc", {}, ""};
    decoder.limits.minSize = Extent{16, 16};
    decoder.limits.maxSize = Extent{640, 480};
    decoder.limits.alignment = Extent{2, 2};
    decoder.limits.blockSize = Extent{16, 16};
    decoder.limits.blockCount = {{1, 1200}};
    decoder.limits.blocksPerSecond = {{1, 36000}};
    decoder.limits.bitrate = {{1000, 2e6}};
    return decoder;
}

Needs video(int32_t width, int32_t height, int32_t rate) {
    Needs needs;
    needs.mime = "video/avc";
    needs.width = width;
    needs.height = height;
    needs.frameRate = rate;
    return needs;
}

std::vector<std::string> idsOf(const DecoderChoice& choice) {
    std::vector<std::string> ids;
    for (const Reason& reason : choice.reasons) {
        ids.push_back(reason.id);
    }
    return ids;
}

std::vector<std::string> complaintsAbout(const Needs& needs) {
    return idsOf(chooseDecoder(needs, {"a list", {videoDecoder("v")}}));
}

TEST(DecoderChoiceTest, WhatLiesWithinAllLimitsHasNoComplaint) {
    EXPECT_THAT(complaintsAbout(video(640, 480, 30)), IsEmpty());
    EXPECT_THAT(complaintsAbout(video(16, 16, 1)), IsEmpty());
}

TEST(DecoderChoiceTest, ASizeOutsideIsRefusedWithTheNumberThatIsBeyond) {
    for (const auto& [width, height] : {std::pair(642, 480), std::pair(640, 482), std::pair(14, 16),
                                        std::pair(17, 16), std::pair(16, 17)}) {
        EXPECT_THAT(complaintsAbout(video(width, height, 1)), ElementsAre("size-outside"))
                << width << "x" << height;
    }
}

TEST(DecoderChoiceTest, TheFirstLimitOfSizesThatIsBrokenIsNamed) {
    struct Case {
        int32_t width, height;
        double value, limit;
        const char* declared;
    };
    for (const Case& broken :
         {Case{320, 576, 576, 480, "at most 640x480"}, Case{641, 8, 641, 640, "at most 640x480"},
          Case{320, 9, 9, 16, "at least 16x16"}, Case{321, 241, 321, 2, "multiples of 2x2"}}) {
        const DecoderChoice choice =
                chooseDecoder(video(broken.width, broken.height, 25), {"", {videoDecoder("c2.v")}});
        ASSERT_THAT(idsOf(choice), ElementsAre("size-outside"));
        const Reason& reason = choice.reasons[0];
        EXPECT_EQ(reason.text, fmt::format("the pictures have {}x{}; c2.v declares {}",
                                           broken.width, broken.height, broken.declared));
        EXPECT_EQ(reason.value, broken.value);
        EXPECT_EQ(reason.limit, broken.limit);
        EXPECT_EQ(reason.verdict, Verdict::kDoesNotPlay);
    }
}

TEST(DecoderChoiceTest, BlocksThatAreBegunCount) {
    Decoder decoder = videoDecoder("v");
    decoder.limits.blockCount = {{1, 4}};
    EXPECT_THAT(idsOf(chooseDecoder(video(32, 32, 1), {"", {decoder}})), IsEmpty());
    EXPECT_THAT(idsOf(chooseDecoder(video(34, 32, 1), {"", {decoder}})),
                ElementsAre("size-outside"));
}

TEST(DecoderChoiceTest, TooManyPicturesASecondAreAFault) {
    EXPECT_THAT(complaintsAbout(video(640, 480, 31)), ElementsAre("frame-rate-outside"));
    EXPECT_THAT(complaintsAbout(video(320, 240, 60)), IsEmpty());
    Decoder decoder = videoDecoder("v");
    decoder.limits.frameRate = {{1, 30}};
    EXPECT_THAT(idsOf(chooseDecoder(video(64, 64, 31), {"", {decoder}})),
                ElementsAre("frame-rate-outside"));
}

TEST(DecoderChoiceTest, ABitrateAboveIsAFaultAndOneBelowIsNone) {
    Needs needs = video(64, 64, 25);
    needs.bitrate = 2'000'001;
    const DecoderChoice choice = chooseDecoder(needs, {"", {videoDecoder("v")}});
    EXPECT_THAT(idsOf(choice), ElementsAre("bitrate-outside"));
    EXPECT_EQ(choice.reasons[0].verdict, Verdict::kPlaysWithFaults);
    needs.bitrate = 10;
    EXPECT_THAT(complaintsAbout(needs), IsEmpty());
}

TEST(DecoderChoiceTest, SoundMustHaveARateAndChannelsThatAreDeclared) {
    Decoder decoder{"a", "audio/ac3", {}, ""};
    decoder.limits.sampleRate = {{32000, 32000}, {48000, 48000}};
    decoder.limits.channelCount = {{1, 2}};
    Needs needs;
    needs.mime = "AUDIO/AC3";
    needs.sampleRate = 44100;
    needs.channelCount = 6;
    const DecoderChoice choice = chooseDecoder(needs, {"", {decoder}});
    EXPECT_THAT(idsOf(choice), ElementsAre("sample-rate-outside", "channels-outside"));
    EXPECT_EQ(choice.reasons[0].text, "44100 samples a second; a declares 32000, 48000");
    EXPECT_EQ(choice.reasons[1].text, "6 channels; a declares at most 2");
}

TEST(DecoderChoiceTest, TheLimitIsTheNearestEndOfARange) {
    Decoder decoder{"a", "audio/ac3", {}, ""};
    decoder.limits.sampleRate = {{7350, 8000}, {32000, 44100}};
    Needs needs;
    needs.mime = "audio/ac3";
    const std::vector<std::pair<int32_t, double>> limits = {{7000, 7350},   {8001, 8000},
                                                            {19999, 8000},  {20001, 32000},
                                                            {31999, 32000}, {48000, 44100}};
    for (const auto& [rate, limit] : limits) {
        needs.sampleRate = rate;
        const DecoderChoice choice = chooseDecoder(needs, {"", {decoder}});
        ASSERT_THAT(idsOf(choice), ElementsAre("sample-rate-outside"));
        EXPECT_EQ(choice.reasons[0].limit, limit) << rate;
    }
}

TEST(DecoderChoiceTest, ABitrateBetweenTwoRangesIsNoFault) {
    Decoder decoder = videoDecoder("v");
    decoder.limits.bitrate = {{1000, 2000}, {4000, 8000}};
    Needs needs = video(64, 64, 25);
    needs.bitrate = 3000;
    EXPECT_THAT(idsOf(chooseDecoder(needs, {"", {decoder}})), IsEmpty());
    needs.bitrate = 8001;
    EXPECT_THAT(idsOf(chooseDecoder(needs, {"", {decoder}})), ElementsAre("bitrate-outside"));
}

TEST(DecoderChoiceTest, AProfileThatAKnownDecoderDoesNotTakeIsRefused) {
    Needs needs;
    needs.mime = "video/mp4v-es";
    needs.profile = "Advanced Simple";
    const Decoder androids{"c2.android.mpeg4.decoder", "video/mp4v-es", {}, ""};
    const DecoderChoice choice = chooseDecoder(needs, {"", {androids}});
    ASSERT_THAT(idsOf(choice), ElementsAre("profile-outside"));
    EXPECT_EQ(choice.reasons[0].subject, "Advanced Simple");
    needs.profile = "Simple";
    EXPECT_THAT(chooseDecoder(needs, {"", {androids}}).reasons, IsEmpty());
    needs.profile = "Advanced Simple";
    const Decoder makers{"c2.maker.mpeg4.decoder", "video/mp4v-es", {}, ""};
    EXPECT_EQ(chooseDecoder(needs, {"", {androids, makers}}).name, "c2.maker.mpeg4.decoder");
}

TEST(DecoderChoiceTest, OfSeveralTheOneWithTheLeastComplaintsIsTaken) {
    Decoder larger = videoDecoder("larger");
    larger.limits.maxSize = Extent{1920, 1088};
    larger.limits.blockCount.clear();
    const DecoderList list{"", {videoDecoder("smaller"), larger}};
    EXPECT_EQ(chooseDecoder(video(64, 64, 25), list).name, "smaller");
    EXPECT_EQ(chooseDecoder(video(720, 576, 1), list).name, "larger");
}

TEST(DecoderChoiceTest, WithoutADecoderThoseThatCannotBeUsedAreNamed) {
    Decoder secure = videoDecoder("v.secure");
    secure.unusable = "plays protected content only";
    const DecoderChoice choice = chooseDecoder(video(64, 64, 1), {"the list", {secure}});
    EXPECT_EQ(choice.name, "");
    ASSERT_THAT(idsOf(choice), ElementsAre("no-decoder"));
    EXPECT_EQ(choice.reasons[0].text,
              "no decoder for video/avc among the list; v.secure plays protected content only");
    EXPECT_EQ(choice.reasons[0].subject, "video/avc");
}

TEST(DecoderChoiceTest, AnUnknownValueOfATrackIsNoComplaint) {
    Needs needs;
    needs.mime = "video/avc";
    EXPECT_THAT(complaintsAbout(needs), IsEmpty());
}

}  // namespace
}  // namespace ogmprobe::check
