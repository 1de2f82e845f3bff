// SPDX-License-Identifier: Apache-2.0
#include "FrameType.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace ogmprobe::timeline::test {
namespace {

FrameType typeOf(std::string_view mime, const std::vector<uint8_t>& packet) {
    return frameTypeOf(mime, packet);
}

TEST(FrameType, OfMpeg4IsTheCodingTypeOfTheFirstPicture) {
    constexpr std::string_view kMime = "video/mp4v-es";
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0xb6, 0x10}), FrameType::kIntra);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0xb6, 0x50}), FrameType::kPredicted);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0xb6, 0x90}), FrameType::kBidirectional);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0xb6, 0xd0}), FrameType::kPredicted);
}

TEST(FrameType, OfMpeg4IsFoundAfterHeaders) {
    EXPECT_EQ(typeOf("video/mp4v-es", {0, 0, 1, 0xb0, 1, 0, 0, 1, 0xb6, 0x50, 0, 0, 1, 0xb6, 0x90}),
              FrameType::kPredicted);
}

TEST(FrameType, OfMpeg4IsUnknownWithoutAPicture) {
    EXPECT_EQ(typeOf("video/mp4v-es", {0, 0, 1, 0xb2, 'D', 'i', 'v', 'X'}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/mp4v-es", {0, 0, 1, 0xb6}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/mp4v-es", {0, 0, 1}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/mp4v-es", {}), FrameType::kUnknown);
}

TEST(FrameType, OfMpeg2IsThePictureCodingType) {
    constexpr std::string_view kMime = "video/mpeg2";
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0xb3, 9, 0, 0, 1, 0, 0xff, 0xc8}), FrameType::kIntra);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0, 0, 0x10}), FrameType::kPredicted);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0, 0, 0x18}), FrameType::kBidirectional);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0, 0, 0x38}), FrameType::kUnknown);
    EXPECT_EQ(typeOf(kMime, {0, 0, 1, 0, 0}), FrameType::kUnknown);
}

TEST(FrameType, OfH264IsTheTypeOfTheFirstSlice) {
    constexpr std::string_view kMime = "video/avc";
    // first_mb_in_slice 0 is the bit 1; slice_type follows: 0 is 1, 1 is 010, 7 is 0001000.
    EXPECT_EQ(typeOf(kMime, {0, 0, 0, 1, 0x41, 0xc0}), FrameType::kPredicted);
    EXPECT_EQ(typeOf(kMime, {0, 0, 0, 1, 0x01, 0xa0}), FrameType::kBidirectional);
    EXPECT_EQ(typeOf(kMime, {0, 0, 0, 1, 0x65, 0x88, 0x80}), FrameType::kIntra);
}

TEST(FrameType, OfH264IsFoundAfterParameterSets) {
    EXPECT_EQ(typeOf("video/avc",
                     {0, 0, 0, 1, 0x67, 1, 2, 0, 0, 0, 1, 0x68, 3, 0, 0, 1, 0x65, 0x88, 0x80}),
              FrameType::kIntra);
}

TEST(FrameType, OfH264IsUnknownWhereTheSliceHeaderIsCutOrWrong) {
    EXPECT_EQ(typeOf("video/avc", {0, 0, 1, 0x65}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/avc", {0, 0, 1, 0x65, 0x00}), FrameType::kUnknown);
    // slice_type 10 does not exist.
    EXPECT_EQ(typeOf("video/avc", {0, 0, 1, 0x65, 0x8b, 0x00}), FrameType::kUnknown);
}

TEST(FrameType, OfMotionJpegIsIntra) {
    EXPECT_EQ(typeOf("video/x-motion-jpeg", {0xff, 0xd8, 0xff}), FrameType::kIntra);
    EXPECT_EQ(typeOf("video/x-motion-jpeg", {0, 0}), FrameType::kUnknown);
}

TEST(FrameType, OfVp8IsInTheFrameTag) {
    EXPECT_EQ(typeOf("video/x-vnd.on2.vp8", {0x10, 0, 0, 0x9d, 0x01, 0x2a}), FrameType::kIntra);
    EXPECT_EQ(typeOf("video/x-vnd.on2.vp8", {0x11, 0, 0}), FrameType::kPredicted);
    EXPECT_EQ(typeOf("video/x-vnd.on2.vp8", {0x10, 0, 0, 0x9d, 0x01, 0x2b}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/x-vnd.on2.vp8", {0x10, 0, 0}), FrameType::kUnknown);
    EXPECT_EQ(typeOf("video/x-vnd.on2.vp8", {}), FrameType::kUnknown);
}

TEST(FrameType, OfOtherCodecsIsUnknown) {
    EXPECT_EQ(typeOf("audio/mpeg", {0, 0, 1, 0xb6, 0x10}), FrameType::kUnknown);
    EXPECT_EQ(letterOf(FrameType::kUnknown), 'U');
    EXPECT_EQ(letterOf(FrameType::kBidirectional), 'B');
}

}  // namespace
}  // namespace ogmprobe::timeline::test
