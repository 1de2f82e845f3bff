// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmTest"

#include <gtest/gtest.h>

#include <memory>

#include "BitWriter.h"
#include "ChildProcess.h"
#include "ElementaryStreams.h"
#include "Views.h"
#include "codec/Ogmavc_utils.h"

namespace android::ogm::test::vol_header_test {
namespace {

constexpr char kSource[] = "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:";
constexpr char kTag[] = "avc_utils";

struct Size {
    int32_t width;
    int32_t height;

    bool operator==(const Size& other) const {
        return width == other.width && height == other.height;
    }
    friend std::ostream& operator<<(std::ostream& stream, const Size& size) {
        return stream << size.width << " x " << size.height;
    }
};

Size sizeOf(const Bytes& vol) {
    const auto exact = std::make_unique<uint8_t[]>(vol.size());
    std::copy(vol.begin(), vol.end(), exact.get());
    Size size{-1, -1};
    EXPECT_TRUE(ExtractDimensionsFromVOLHeader(ByteView(exact.get(), vol.size()), &size.width,
                                               &size.height));
    return size;
}

Size sizeOf(const VideoObjectLayer& vol) {
    return sizeOf(vol.bytes());
}

ChildResult readInChild(const Bytes& vol) {
    return runInChild([&vol] {
        int32_t width = 0;
        int32_t height = 0;
        ExtractDimensionsFromVOLHeader(viewOf(vol), &width, &height);
    });
}

ChildResult failedCheck(int line, const std::string& text) {
    return abortedWith(kTag, kSource + std::to_string(line) + " " + text);
}

/** A simple object in the shortest form, up to and without vop_time_increment_resolution. */
BitWriter shortestForm() {
    BitWriter bits;
    bits.put(0, 1).put(0x01, 8).put(0, 1).put(1, 4).put(0, 1).put(0, 2).put(1, 1);
    return bits;
}

/** Adds the fields after fixed_vop_rate and its increment, with the standard's widths. */
Bytes finished(BitWriter bits, uint32_t width, uint32_t height) {
    bits.put(1, 1).put(width, 13).put(1, 1).put(height, 13).put(1, 1).put(0, 1);
    return joined({{0x00, 0x00, 0x01, 0x20}, bits.bytes()});
}

TEST(VolHeaderTest, AVolFromAnOrdinaryEncoderGivesItsSize) {
    // 640 x 480, 25 units a second, no control parameters.
    const Bytes vol{0x00, 0x00, 0x01, 0x20, 0x00, 0x84, 0x40, 0x06, 0x68, 0xA0, 0x28, 0x3C, 0x20};
    // 0 00000001 0 0001 0 00 1 0000000000011001 1 0 1 0001010000000 1 0000111100000 1 0
    const Bytes expected = finished(shortestForm().put(25, 16).put(1, 1).put(0, 1), 640, 480);
    EXPECT_EQ(sizeOf(expected), (Size{640, 480}));
    EXPECT_EQ(head(vol, 6), head(expected, 6));
}

TEST(VolHeaderTest, TheWholeWidthAndHeightCount) {
    VideoObjectLayer vol;
    for (const Size size : {Size{1, 1}, Size{176, 144}, Size{640, 480}, Size{8191, 8191},
                            Size{4096, 1}, Size{0, 0}}) {
        vol.width = static_cast<uint32_t>(size.width);
        vol.height = static_cast<uint32_t>(size.height);
        EXPECT_EQ(sizeOf(vol), size);
    }
}

TEST(VolHeaderTest, EveryObjectTypeButFineGranularityScalablePasses) {
    VideoObjectLayer vol;
    for (uint32_t type = 0; type < 0x100; ++type) {
        if (type != 0x21) {
            vol.objectType = type;
            EXPECT_EQ(sizeOf(vol), (Size{176, 144})) << type;
        }
    }
}

TEST(VolHeaderTest, FineGranularityScalableEndsTheProcess) {
    VideoObjectLayer vol;
    vol.objectType = 0x21;
    EXPECT_EQ(readInChild(vol.bytes()),
              failedCheck(542, "CHECK_NE( video_object_type_indication,0x21u) failed: 33 vs. 33"));
}

TEST(VolHeaderTest, VersionAndPriorityArePassedOver) {
    VideoObjectLayer vol;
    for (uint32_t verId = 0; verId < 16; ++verId) {
        vol.verId = verId;
        EXPECT_EQ(sizeOf(vol), (Size{176, 144})) << verId;
    }
}

TEST(VolHeaderTest, OnlyAspectRatioFifteenIsFollowedByAWidthAndAHeight) {
    VideoObjectLayer vol;
    for (uint32_t ratio = 0; ratio < 16; ++ratio) {
        vol.aspectRatio = ratio;
        EXPECT_EQ(sizeOf(vol), (Size{176, 144})) << ratio;
    }
}

TEST(VolHeaderTest, ControlParametersWithoutAndWithBufferParametersArePassedOver) {
    VideoObjectLayer vol;
    vol.controlParameters = true;
    EXPECT_EQ(sizeOf(vol), (Size{176, 144}));
    vol.vbvParameters = true;
    EXPECT_EQ(sizeOf(vol), (Size{176, 144}));
}

TEST(VolHeaderTest, AllOptionalFieldsTogetherArePassedOver) {
    VideoObjectLayer vol;
    vol.verId = 2;
    vol.aspectRatio = 15;
    vol.controlParameters = true;
    vol.vbvParameters = true;
    vol.fixedVopRate = true;
    vol.timeIncrementResolution = 30000;
    EXPECT_EQ(sizeOf(vol), (Size{176, 144}));
}

TEST(VolHeaderTest, AShapeThatIsNotRectangularEndsTheProcess) {
    VideoObjectLayer vol;
    for (uint32_t shape = 1; shape < 4; ++shape) {
        vol.shape = shape;
        EXPECT_EQ(readInChild(vol.bytes()),
                  failedCheck(573, "CHECK_EQ( video_object_layer_shape,0x00u) failed: " +
                                           std::to_string(shape) + " vs. 0"));
    }
}

TEST(VolHeaderTest, AFixedRateIncrementHasAsManyBitsAsTheGreatestIncrementNeeds) {
    struct Case {
        uint32_t resolution;
        size_t bits;
    };
    for (const auto& [resolution, bits] :
         {Case{1, 0}, Case{2, 1}, Case{3, 2}, Case{4, 2}, Case{5, 3}, Case{25, 5}, Case{256, 8},
          Case{257, 9}, Case{30000, 15}, Case{32768, 15}, Case{32769, 16}, Case{65535, 16}}) {
        BitWriter writer = shortestForm().put(resolution, 16).put(1, 1).put(1, 1);
        writer.put(0, bits);
        EXPECT_EQ(sizeOf(finished(writer, 320, 240)), (Size{320, 240})) << resolution;
    }
}

TEST(VolHeaderTest, AFixedRateOfNoResolutionEndsTheProcess) {
    VideoObjectLayer vol;
    vol.fixedVopRate = true;
    vol.timeIncrementResolution = 0;
    EXPECT_EQ(readInChild(vol.bytes()),
              failedCheck(589, "CHECK_GT( vop_time_increment_resolution,0u) failed: 0 vs. 0"));
}

TEST(VolHeaderTest, WithoutAFixedRateNoResolutionIsFine) {
    VideoObjectLayer vol;
    vol.timeIncrementResolution = 0;
    EXPECT_EQ(sizeOf(vol), (Size{176, 144}));
}

TEST(VolHeaderTest, EachMissingMarkerBitEndsTheProcessWithItsOwnLine) {
    VideoObjectLayer vol;
    vol.controlParameters = true;
    vol.vbvParameters = true;
    vol.fixedVopRate = true;
    size_t marker = 0;
    for (const int line : {560, 562, 564, 567, 569, 575, 577, 601, 603, 605}) {
        vol.clearMarker = marker++;
        EXPECT_EQ(readInChild(vol.bytes()), failedCheck(line, "CHECK(br.getBits(1)) failed."));
    }
    vol.clearMarker.reset();
    EXPECT_EQ(readInChild(vol.bytes()), returned());
}

TEST(VolHeaderTest, WhatFollowsTheInterlacedFlagIsNotNeeded) {
    const Bytes vol = finished(shortestForm().put(25, 16).put(1, 1).put(0, 1), 320, 240);
    EXPECT_EQ(sizeOf(vol), (Size{320, 240}));
}

TEST(VolHeaderTest, AVolThatIsCutOffEndsTheProcessByTheBitReadersAssertion) {
    const Bytes vol = finished(shortestForm().put(25, 16).put(1, 1).put(0, 1), 320, 240);
    for (size_t size = 4; size < vol.size(); ++size) {
        const ChildResult result = readInChild(head(vol, size));
        EXPECT_EQ(result.end, ChildResult::End::kAborted) << size;
        ASSERT_TRUE(result.fatal) << size;
        EXPECT_EQ(result.fatal->text,
                  "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:56 "
                  "CHECK(getBitsGraceful(n, &ret)) failed.");
    }
}

TEST(VolHeaderTest, TheStartCodeIsPassedOverUnread) {
    Bytes vol = VideoObjectLayer{}.bytes();
    for (size_t i = 0; i < 4; ++i) {
        vol[i] = 0xEE;
    }
    EXPECT_EQ(sizeOf(vol), (Size{176, 144}));
}

}  // namespace
}  // namespace android::ogm::test::vol_header_test
